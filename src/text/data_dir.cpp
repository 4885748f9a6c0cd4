#include "text/data_dir.hpp"

namespace TAVO {

char const* const kDataDir = TAVO_DATA_DIR;

}  // namespace TAVO
