/* A C program's whole use of the older functions, each step checked. */
#include <tavo/tavo_legacy.h>

#include <string.h>

int useLegacy(char const* user, char const* otherUser, char const* system, char const* source);

static int gives(int result, char const* buffer, char const* expected) {
    return result == (int)strlen(expected) && strcmp(buffer, expected) == 0;
}

/* The environment names the folder and the user dictionary; the number of the step that failed, or 0. */
int useLegacy(char const* user, char const* otherUser, char const* system, char const* source) {
    char out[64];
    int const room = (int)sizeof out;

    if (tavoexec("ab", out, room) != -10012) return 1;
    if (tavoinit() != 0) return 2;
    if (!gives(tavoexec("ab", out, room), out, "a/Verb,b/Noun,."))
        return 3; /* by the user dictionary, then the other */
    if (tavoexec("ab", NULL, 0) != 16 || tavoexec("ab", out, 15) != -10002 || *out != '\0') return 4;
    if (!gives(tavoerror(out, room), out, "NOT_ENOUGH_BUFFER:tavoexec()")) return 5;
    if (tavooption("OutputFormat", "%w ") != 0 || tavooption("EOS", ";") != 0) return 6;
    if (!gives(tavonbest("ab", 3, out, room), out, "a b ;a b ;ab ;")) return 7;
    if (tavonbest("ab", -1, out, room) != -10001 || tavonbest("ab", 0, out, room) != 0) return 8;
    if (tavooption("DivideWord", "2") != -10001 || tavooption("DivideWord", "x") != -10010) return 9;
    if (tavooption("NoSuch", "1") != -10010 || tavooption("DivideWord", "1") != 0) return 10;
    if (!gives(tavogetdicform("ab", out, room), out, "a")) return 11;
    if (tavooption("OutputFormat", "%H ") != 0) return 12;
    /* Without user dictionary, with another, and with the first one back in its place. */
    if (tavousrjisho(NULL) != 0 || !gives(tavoexec("a", out, room), out, "Noun ;")) return 13;
    if (tavousrjisho(otherUser) != 0 || !gives(tavoexec("a", out, room), out, "Tail ;")) return 14;
    if (tavoreplace(otherUser, user) != 0 || !gives(tavoexec("a", out, room), out, "Verb ;")) return 15;
    if (tavoreplace(otherUser, user) != -10003 || tavoreplace(user, "nowhere") != -10003) return 16;
    if (!gives(tavoexec("a", out, room), out, "Verb ;")) return 17; /* as it was */
    /* Taken off and put back at its end, it comes behind the others. */
    if (tavodetach(user) != 0 || tavodetach(user) != -10003 || tavoattach(user) != 0) return 18;
    if (!gives(tavoexec("a", out, room), out, "Noun ;")) return 19;
    /* The last one is the system dictionary. */
    if (tavosysjisho(otherUser) != 0 || tavodetach(system) != 0) return 20;
    if (!gives(tavoexec("a", out, room), out, "Tail ;")) return 21;
    if (tavosysjisho(source) != 0 || !gives(tavoexec("a", out, room), out, "Noun ;")) return 22;
    if (tavoremake_end() != -10008 || tavoremake_start(system) != 0) return 23;
    if (tavoremake_start(system) != -10003 && tavoremake_start(system) != -10008) return 24;
    if (tavoexec("a", out, room) != -10012) return 25; /* no dictionary is left */
    if (tavoremake_end() != 0 || !gives(tavoexec("a", out, room), out, "Noun ;")) return 26;
    if (tavoexec(NULL, out, room) != -10001 || tavoattach(NULL) != -10001) return 27;
    return tavofinish() == 0 && tavofinish() == 0 && tavoexec("a", out, room) == -10012 ? 0 : 28;
}
