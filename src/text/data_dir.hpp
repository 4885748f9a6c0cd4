// Where the installed lexicon lies.
#ifndef TAVO_TEXT_DATA_DIR_HPP
#define TAVO_TEXT_DATA_DIR_HPP

namespace TAVO {

/// Of the prefix that the library was built for. Absolute.
extern char const* const kDataDir;

}  // namespace TAVO

#endif
