// The analyser's settings: integer modes with their ranges, and strings.
#ifndef TAVO_CONFIG_SETTINGS_HPP
#define TAVO_CONFIG_SETTINGS_HPP

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace TAVO {

/// The integer modes, in the order in which an init file's keys are applied.
enum class Mode : std::size_t {
    MemoryMapped,
    Cooccurrence,
    TaggedInput,
    DeleteSlash,
    InputConvert,
    OutputConvert,
    DivideWord,
    DelimitCRLF,
    DeleteCRLF,
    AlphabetCapitalize,
    Alternative,
    ReduceUndef,
    ReduceChar,
    ReduceNumber,
};
inline constexpr std::size_t kModeCount = 14;

struct ModeInfo {
    Mode mode;
    char const* key;  // init-file key; setter "set" + key + "Mode"
    int maximum;      // valid values are 0..maximum
    int defaultValue;
};
extern std::array<ModeInfo, kModeCount> const kModes;

/// How the values of joined morphemes make one.
enum class Combine : int { Join = 0, First = 1, Last = 2 };

/// All settings of one analyser; a plain copyable value.
struct Settings {
    Settings();

    int mode(Mode m) const noexcept { return modes[static_cast<std::size_t>(m)]; }
    /// Throws invalid_argument "INVALID_ARGUMENT: Tavo::set" + key + "Mode()"
    /// outside the range; the stored value then stays.
    void setMode(Mode m, int value);

    std::array<int, kModeCount> modes;
    int prosodicInfoCombine = static_cast<int>(Combine::Last);
    std::string prosodicInfoFiller;
    std::map<int, int> extCombine;
    std::map<int, std::string> extFiller;
    std::vector<std::string> delimiters;
    std::string outputFormat = "%10w %20h %k\\n";
    std::string eos;
    std::string nullString;
    std::string initFilePath;
    std::string connTablePath;
};

}  // namespace TAVO

#endif
