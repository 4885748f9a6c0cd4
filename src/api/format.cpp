// Formatted morphemes, into buffers and to streams.
#include "api/deliver.hpp"

#include <sstream>
#include <stdexcept>

using namespace TAVO;
using namespace TAVO::api;

namespace {

/// Writes what write(stream) puts out.
template <class Write>
int toStream(FILE* stream, char const* function, Write write) {
    std::ostringstream text;
    write(text);
    std::string_view const bytes = text.view();
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream) != bytes.size())
        throw std::runtime_error(std::string("cannot write: ") + function + "()");
    return 0;
}

}  // namespace

int tavo_format(tavo_mrph_t* mrph, char const* format, char const* nullString, char* buffer, int size) {
    return textOf(mrph, __func__, format != nullptr && nullString != nullptr, {buffer, size},
                  [&](Mrph& object) { return object.format(format, nullString); });
}

int tavo_formatPart(tavo_mrph_t* mrph, int part, char const* format, char const* nullString, char* buffer, int size) {
    return textOf(mrph, __func__, part >= 0 && format != nullptr && nullString != nullptr, {buffer, size},
                  [&](Mrph& object) { return object.format(part, format, nullString); });
}

int tavo_output(tavo_mrph_t* mrph, FILE* stream, char const* format, char const* nullString, int byPart) {
    return guarded(mrph, __func__, [&](Mrph& object, Call call) {
        call.require(stream != nullptr && format != nullptr && nullString != nullptr && isFlag(byPart));
        return toStream(stream, call.function,
                        [&](std::ostream& os) { object.output(os, format, nullString, byPart == 1); });
    });
}

int tavo_outputPart(tavo_mrph_t* mrph, FILE* stream, int part, char const* format, char const* nullString) {
    return guarded(mrph, __func__, [&](Mrph& object, Call call) {
        call.require(stream != nullptr && part >= 0 && format != nullptr && nullString != nullptr);
        return toStream(stream, call.function, [&](std::ostream& os) { object.output(os, part, format, nullString); });
    });
}
