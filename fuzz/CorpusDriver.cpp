// Runs a fuzz target once over every file of the folders (or the files) it is given, without
// libFuzzer, so an ordinary build and its tests can check that the targets and their seed
// corpora still agree with the code. A target that finds a fault aborts, failing the run.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

bool runFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    // Exactly the file's size, so a read past its end is caught as under libFuzzer.
    std::vector<uint8_t> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(data.data(), data.size());
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int files = 0;
    bool ok = true;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path arg(argv[i]);
        std::vector<std::filesystem::path> paths;
        if (std::filesystem::is_directory(arg)) {
            for (const auto& entry : std::filesystem::directory_iterator(arg)) {
                if (entry.is_regular_file())
                    paths.push_back(entry.path());
            }
        } else {
            paths.push_back(arg);
        }
        for (const auto& path : paths) {
            if (runFile(path))
                ++files;
            else
                ok = false;
        }
    }
    std::printf("%d inputs ran\n", files);
    // A corpus that has gone missing would make the test pass without running anything.
    return ok && files > 0 ? 0 : 1;
}
