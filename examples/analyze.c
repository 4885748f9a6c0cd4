/* Prints the morphemes of each line of standard input, which is Shift_JIS text:
   cc analyze.c -o analyze $(pkg-config --cflags --libs tavo)
   echo すもももももももものうち | iconv -t cp932 | ./analyze LEXICON | iconv -f cp932
   LEXICON is the folder with SysDic and ConnTable; reduce.rules and number.list, which
   join digits and unknown letters, may be missing. */
#include <string.h>
#include <tavo/tavo.h>

static int failed(tavo_t* tavo) {
    fprintf(stderr, "analyze: %s\n", tavo_getErrorWhat(tavo));
    return 1;
}

/* Calls set with the path of a file of the folder; a file that may be missing is no failure then. */
static int use(tavo_t* tavo, int (*set)(tavo_t*, char const*), char const* folder, char const* name, int optional) {
    char path[4096];
    int code;
    snprintf(path, sizeof path, "%s/%s", folder, name);
    code = set(tavo, path);
    return code >= 0 || (optional && code == -10003);
}

static int addDic(tavo_t* tavo, char const* path) { return tavo_addDicPath(tavo, path, 1); }

int main(int argc, char** argv) {
    char line[4096];
    tavo_result_t result;
    tavo_t* tavo = tavo_new(0);
    if (tavo == NULL || argc != 2) return 2;
    if (!use(tavo, tavo_setConnTablePath, argv[1], "ConnTable", 0)) return failed(tavo);
    if (!use(tavo, tavo_setReduceRulePath, argv[1], "reduce.rules", 1)) return failed(tavo);
    if (!use(tavo, tavo_setNumberPartOfSPPath, argv[1], "number.list", 1)) return failed(tavo);
    if (!use(tavo, addDic, argv[1], "SysDic", 0)) return failed(tavo);
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
