#include "dic/record_check.hpp"

#include "base/bytes.hpp"
#include "dic/mrph_dic.hpp"

#include <initializer_list>
#include <string>

namespace TAVO {
namespace {

struct Item {
    unsigned flag;
    char const* name;
};
constexpr std::initializer_list<Item> kTexts{{MrphDic::kReadPron, "ReadPron"},
                                             {MrphDic::kStdForm, "StdForm"},
                                             {MrphDic::kWordCooc, "WordCooc"},
                                             {MrphDic::kGroupCooc, "GroupCooc"},
                                             {MrphDic::kGroup, "Group"}};
constexpr std::initializer_list<Item> kCategories{
    {MrphDic::kCat1, "Cat1"}, {MrphDic::kCat2, "Cat2"}, {MrphDic::kCat3, "Cat3"}};
constexpr unsigned kKnownFlagsB =
    MrphDic::kAnotherFollows | MrphDic::kCat1 | MrphDic::kCat2 | MrphDic::kCat3 | MrphDic::kProsodicInfo;

/// Checks one record that lies inside the file.
class RecordCheck {
public:
    RecordCheck(std::string_view file, std::size_t position, std::size_t nameCount, FaultList& faults)
        : file_(file),
          record_(asBytes(file.data()) + position),
          start_(position),
          pos_(position + MrphDic::kHeadBytes),
          end_(position + record_.sizeBytes()),
          nameCount_(nameCount),
          faults_(faults) {}

    void run() {
        checkId(start_ + 2, "part-of-speech id");
        if ((record_.flagsB() & ~kKnownFlagsB) != 0) faults_.add(start_ + 7, "unknown bits are set in flags B");
        checkBody();
    }

private:
    /// An item that does not fit hides all behind it.
    void checkBody() {
        if ((record_.flagsA() & MrphDic::kCompound) != 0 && !checkParts()) return;
        for (Item const& item : kTexts) {
            if ((record_.flagsA() & item.flag) != 0 && !checkText(item.name)) return;
        }
        for (Item const& item : kCategories) {
            if ((record_.flagsB() & item.flag) != 0 && !checkList(item.name, 1)) return;
        }
        if ((record_.flagsB() & MrphDic::kProsodicInfo) != 0 && !checkText("ProsodicInfo")) return;
        while (pos_ < end_) {
            if (!checkText("Ext")) return;
        }
    }

    bool checkParts() {
        std::size_t const list = pos_;
        if (!checkList("the list of parts", 2)) return false;
        for (std::size_t id = list + 1; id < pos_; id += 2) checkId(id, "part-of-speech id of a part");
        return checkText("PartForm");
    }

    bool checkText(char const* name) {
        std::size_t const nul = file_.substr(0, end_).find('\0', pos_);
        if (nul == std::string_view::npos) return fail(std::string(name) + " is not ended inside its record");
        pos_ = nul + 1;
        return true;
    }

    bool checkList(char const* name, unsigned minimum) {
        std::size_t const count = pos_ < end_ ? static_cast<unsigned char>(file_[pos_]) : 0;
        if (pos_ >= end_ || end_ - pos_ < 1 + 2 * count) return fail(std::string(name) + " leaves its record");
        if (count < minimum) faults_.add(pos_, std::string(name) + " has too few entries: " + std::to_string(count));
        pos_ += 1 + 2 * count;
        return true;
    }

    void checkId(std::size_t position, char const* name) {
        unsigned const id = loadU16(asBytes(file_.data()) + position);
        if (id == 0 || id > nameCount_)
            faults_.add(position, std::string(name) + " has no name: " + std::to_string(id));
    }

    bool fail(std::string const& text) {
        faults_.add(pos_, text);
        return false;
    }

    std::string_view file_;
    MrphDic record_;
    std::size_t start_;
    std::size_t pos_;
    std::size_t end_;
    std::size_t nameCount_;
    FaultList& faults_;
};

}  // namespace

std::size_t checkChain(std::string_view file, std::size_t position, std::size_t nameCount, FaultList& faults) {
    for (;;) {
        if (position > file.size() || file.size() - position < MrphDic::kHeadBytes) {
            faults.add(position, "a record's head leaves the leaf area");
            return file.size();
        }
        MrphDic const record(asBytes(file.data()) + position);
        if (record.sizeBytes() < MrphDic::kHeadBytes || record.sizeBytes() > file.size() - position) {
            faults.add(position, "a record's length does not fit: " + std::to_string(record.sizeBytes()));
            return position + MrphDic::kHeadBytes;
        }
        RecordCheck(file, position, nameCount, faults).run();
        position += record.sizeBytes();
        if (!record.anotherFollows()) return position;
    }
}

}  // namespace TAVO
