/* Prints the morphemes of each line of standard input, which is Shift_JIS text:
   cc analyze.c -o analyze $(pkg-config --cflags --libs tavo)
   echo すもももももももものうち | iconv -t cp932 | ./analyze LEXICON | iconv -f cp932
   LEXICON is the folder with SysDic and ConnTable. */
#include <string.h>
#include <tavo/tavo.h>

static int failed(tavo_t* tavo) {
    fprintf(stderr, "analyze: %s\n", tavo_getErrorWhat(tavo));
    return 1;
}

int main(int argc, char** argv) {
    char path[4096], line[4096];
    tavo_result_t result;
    tavo_t* tavo = tavo_new(0);
    if (tavo == NULL || argc != 2) return 2;
    snprintf(path, sizeof path, "%s/ConnTable", argv[1]);
    if (tavo_setConnTablePath(tavo, path) < 0) return failed(tavo);
    snprintf(path, sizeof path, "%s/SysDic", argv[1]);
    if (tavo_addDicPath(tavo, path, 1) < 0) return failed(tavo);
    while (fgets(line, sizeof line, stdin) != NULL) {
        int i, length = (int)strcspn(line, "\n");
        if (tavo_analyze(tavo, line, length) < 0) return failed(tavo);
        if (tavo_getResult(tavo, &result, 0) < 0) return failed(tavo);
        for (i = 0; i < result.count; ++i) {
            char partOfSP[256];
            tavo_getDisplayPartOfSP(result.array[i], partOfSP, sizeof partOfSP);
            tavo_output(result.array[i], stdout, "%10w ", "", 0);
            printf("%-20s ", partOfSP);
            tavo_output(result.array[i], stdout, "%k\\n", "", 0);
        }
    }
    return tavo_free(tavo);
}
