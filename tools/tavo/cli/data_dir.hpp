// Where an installed lexicon lies.
#ifndef TAVO_TOOL_DATA_DIR_HPP
#define TAVO_TOOL_DATA_DIR_HPP

namespace tool {

/// The data folder of the prefix that the build was configured for. Only
/// data_dir.cpp is compiled with it, so another prefix compiles one file.
extern char const kDataDir[];

}  // namespace tool

#endif
