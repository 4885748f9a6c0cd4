// Cuts a text into the pieces that become sentences.
#ifndef TAVO_ENGINE_INTAKE_HPP
#define TAVO_ENGINE_INTAKE_HPP

#include "config/settings.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace TAVO {

/// Calls @p piece for each sentence of @p text, in order: cut at line breaks
/// (DelimitCRLF; DeleteCRLF drops them) and behind delimiter strings, stepping
/// by characters. Empty pieces are not reported. Pieces are parts of @p text.
void splitText(std::string_view text, Settings const& settings, std::function<void(std::string_view)> const& piece);

/// @p text without its line feeds and carriage returns.
std::string deleteLineBreaks(std::string_view text);

}  // namespace TAVO

#endif
