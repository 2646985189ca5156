#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/RecursiveFileIterator.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace brindle::filesupport;

/// A tree of 10,000 empty files in 100 directories, ten of them below each of ten.
class Tree {
public:
    Tree() {
        mRoot = (fs::temp_directory_path() / "brindle-bench-XXXXXX").string();
        if (::mkdtemp(mRoot.data()) == nullptr) {
            std::abort();
        }
        for (int i = 0; i < 10'000; ++i) {
            fs::path const directory = fs::path(mRoot) / ("directory " + std::to_string(i % 10)) /
                                       ("sub" + std::to_string(i / 10 % 10));
            fs::create_directories(directory);
            std::ofstream(directory / ("file name " + std::to_string(i) + ".ext"));
        }
    }
    Tree(Tree const&) = delete;
    Tree& operator=(Tree const&) = delete;
    ~Tree() { fs::remove_all(mRoot); }

    std::string const& Root() const { return mRoot; }

private:
    std::string mRoot;
};

Tree const& TheTree() {
    static Tree const tree;
    return tree;
}

/// Both make the path of every file and tell files from directories.
void Walk_Brindle(benchmark::State& ioState) {
    Dir const root = DirFromNative(TheTree().Root());
    for (auto _ : ioState) {
        std::size_t units = 0;
        for (RecursiveFileIterator file(root, false); file != RecursiveFileIterator(); ++file) {
            units += (*file).Helper().Path().size();
        }
        benchmark::DoNotOptimize(units);
    }
    ioState.SetItemsProcessed(ioState.iterations() * 10'000);
}

void Walk_Standard(benchmark::State& ioState) {
    for (auto _ : ioState) {
        std::size_t units = 0;
        for (fs::directory_entry const& entry :
             fs::recursive_directory_iterator(TheTree().Root())) {
            units += entry.is_regular_file() ? entry.path().native().size() : 0;
        }
        benchmark::DoNotOptimize(units);
    }
    ioState.SetItemsProcessed(ioState.iterations() * 10'000);
}

BENCHMARK(Walk_Brindle)->Name("RecursiveFileIterator/brindle/10,000 files");
BENCHMARK(Walk_Standard)
    ->Name("RecursiveFileIterator/std::filesystem::recursive_directory_iterator/10,000 files");

} // namespace
