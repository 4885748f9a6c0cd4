// A program of somebody else's: links the installed library, and catches what
// it throws by class.
#include <tavo/tavo.hpp>

#include <iostream>
#include <string>

int main() {
    TAVO::Tavo tavo;
    try {
        tavo.setInitFilePath("no/such/file");
    } catch (TAVO::file_not_found const& e) {
        std::cout << "tavo " << TAVO_VERSION << ": " << e.what() << '\n';
        return e.what() == std::string("FILE_NOT_OPEN: no/such/file") ? 0 : 1;
    }
    std::cout << "no exception\n";
    return 1;
}
