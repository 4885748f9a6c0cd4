// The functions of the flat interface by shape, for calling them at random.
#ifndef TAVO_TESTS_FUZZ_API_CALLS_HPP
#define TAVO_TESTS_FUZZ_API_CALLS_HPP

#include <tavo/tavo.h>

#include <span>

namespace TAVO::test {

using MrphValue = int (*)(tavo_mrph_t*);
using MrphNumber = int (*)(tavo_mrph_t*, int);
using MrphText = int (*)(tavo_mrph_t*, char*, int);
using MrphNumberText = int (*)(tavo_mrph_t*, int, char*, int);
using TavoValue = int (*)(tavo_t*);
using TavoNumber = int (*)(tavo_t*, int);
using TavoString = int (*)(tavo_t*, char const*);
using TavoPointer = char const* (*)(tavo_t*);
using TavoNumberText = int (*)(tavo_t*, int, char*, int);

extern std::span<MrphValue const> const kMrphValues;
extern std::span<MrphNumber const> const kMrphNumbers;  ///< with an index or a capacity
extern std::span<MrphText const> const kMrphTexts;
extern std::span<MrphNumberText const> const kMrphNumberTexts;  ///< with a flag or an index
extern std::span<TavoValue const> const kTavoValues;
extern std::span<TavoNumber const> const kTavoNumbers;  ///< modes and dictionary indexes
extern std::span<TavoString const> const kTavoStrings;
extern std::span<TavoPointer const> const kTavoPointers;
extern std::span<TavoNumberText const> const kTavoNumberTexts;

}  // namespace TAVO::test

#endif
