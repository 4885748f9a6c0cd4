/* A C program's way through the interface: every step checked, nothing but the
   public headers. Compiled as C99, and once more as C++. */
#include <tavo/tavo.h>
#include <tavo/tavo_bulk.h>

#include <string.h>

#ifndef CONSUMER
#define CONSUMER analyzeInC
int analyzeInC(char const* dic, char const* connTable, char const* text, char* out, int size);
#endif

/* Writes "form/part-of-speech " for each morpheme to out; 0, or the number of the
   step that failed. */
int CONSUMER(char const* dic, char const* connTable, char const* text, char* out, int size) {
    tavo_t* const tavo = tavo_new(0);
    tavo_result_t result;
    tavo_bulk_t bulk;
    int length = (int)strlen(text), used = 0, i;

    if (tavo == NULL) return 1;
    if (tavo_setConnTablePath(tavo, connTable) < 0) return 2;
    if (tavo_addDicPath(tavo, dic, 1) < 0) return 3;
    if (tavo_isOK(tavo) != 1) return 4;
    if (tavo_analyze(tavo, text, length) != 0) return 5;
    if (tavo_getResult(tavo, &result, 0) < 0) return 6;
    for (i = 0; i < result.count; ++i) {
        int const written = tavo_format(result.array[i], "%w/%H ", "", out + used, size - used);
        if (written < 0) return 7;
        used += written;
    }
    if (tavo_bulkVersion() != TAVO_BULK_VERSION) return 8;
    if (tavo_bulkAnalyze(tavo, &bulk, &text, &length, 1, TAVO_BULK_READ) != 1) return 9;
    if (bulk.morphemeCount != (size_t)result.count || bulk.fieldCount != 1) return 10;
    return tavo_free(tavo) == 0 ? 0 : 11;
}
