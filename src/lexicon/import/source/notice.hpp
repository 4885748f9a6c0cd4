// The notices of a source lexicon (its copyright and licence), which go with what is made of it.
#ifndef TAVO_LEXICON_IMPORT_SOURCE_NOTICE_HPP
#define TAVO_LEXICON_IMPORT_SOURCE_NOTICE_HPP

#include <filesystem>
#include <string>
#include <vector>

namespace TAVO::importer {

constexpr char kNoticeName[] = "COPYING";

/// The files that hold the notices of the lexicon in @p folder, by name: those there whose
/// name begins with COPYING, COPYRIGHT, LICENCE, LICENSE or NOTICE in either case. Else
/// "copyright" of the Debian package that the folder belongs to, by the package lists in
/// @p root (of the file system; "" in use). Empty when there is none.
std::vector<std::filesystem::path> findNotices(std::filesystem::path const& folder, std::string const& root = "");

/// Their texts, byte by byte, each under its file's name when there are several.
/// Throws lexicon_error for a file that cannot be read.
std::string noticeText(std::vector<std::filesystem::path> const& files);

}  // namespace TAVO::importer

#endif
