/* A C program that compiles words in memory and analyses with them. C99. */
#include <tavo/tavo.h>
#include <tavo/tavo_compile.h>

#include <stdio.h>
#include <string.h>

int compileInC(char const* folder, char const* table, char const* list, char const* path, char const* text, char* out,
               int size);

static int countCalls(void* data, char const* stage, size_t done, size_t total) {
    *(int*)data += stage[0] != '\0' && done <= total;
    return 0;
}

static int write(char const* path, tavo_compiled_t const* made) {
    FILE* const file = fopen(path, "wb");
    size_t const written = file == NULL ? 0 : fwrite(made->dictionary, 1, made->dictionary_bytes, file);
    return file != NULL && fclose(file) == 0 && written == made->dictionary_bytes && written != 0;
}

/* Writes "form/part-of-speech " for each morpheme to out; 0, or the number of the step that failed. */
int compileInC(char const* folder, char const* table, char const* list, char const* path, char const* text, char* out,
               int size) {
    tavo_compile_options_t options = {0};
    tavo_compiled_t* made;
    tavo_t* tavo;
    tavo_result_t result;
    int calls = 0, used = 0, i;

    options.size = sizeof options;
    options.lexicon = folder;
    options.like = "d,Noun";
    options.must_win = &text;
    options.must_win_count = 1;
    options.progress = countCalls;
    options.progress_data = &calls;
    made = tavo_compile_words(list, strlen(list), &options);
    if (made == NULL) return 1;
    if (made->size < sizeof *made || made->code != 0) return 2;
    if (made->fault_count != 0 || made->word_count != 1) return 3;
    if (made->verdict_count != 1 || made->verdict_wins[0] != 1 || strlen(made->verdict_text[0]) == 0) return 4;
    if (calls == 0) return 5;
    if (!write(path, made)) return 6;
    tavo_compiled_free(made);

    tavo = tavo_new(0);
    if (tavo == NULL || tavo_setConnTablePath(tavo, table) < 0 || tavo_addDicPath(tavo, path, 1) < 0) return 7;
    if (tavo_analyze(tavo, text, (int)strlen(text)) != 0 || tavo_getResult(tavo, &result, 0) < 0) return 8;
    for (i = 0; i < result.count; ++i) {
        int const written = tavo_format(result.array[i], "%w/%H ", "", out + used, size - used);
        if (written < 0) return 9;
        used += written;
    }
    return tavo_free(tavo) == 0 ? 0 : 10;
}
