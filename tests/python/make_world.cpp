// Writes the small lexicon of the Python tests: make_world DIR
#include "support/small_world.hpp"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    TAVO::test::SmallWorld world;
    world.namesUtf8({"Begin", "End", "Undef", "名詞-7", "助詞:係助詞:Kana", "動詞"});
    world.cost([](unsigned, unsigned) { return 10; });
    world.linesUtf8({"すもも,名詞\\-7,10,スモモ", "もも,名詞\\-7,20,モモ", "も,助詞:係助詞:Kana,5,モ",
                     "の,助詞:係助詞:Kana,5,ノ", "うち,名詞\\-7,30,ウチ", "ソ能,名詞\\-7,9,ソノー",
                     "髙,名詞\\-7,9,タカ", "食べ,動詞,12,タ(ベ|ベー),食べる", "食べ,名詞\\-7,13",
                     "東-京,名詞\\-7,8,トウ/キョウ"});
    world.writeTo(argv[1]);
    return 0;
}
