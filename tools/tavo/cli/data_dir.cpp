#include "cli/data_dir.hpp"

namespace tool {

char const kDataDir[] = TAVO_DATA_DIR;

}  // namespace tool
