#include "BenchModel.h"

#include <exception>
#include <iostream>
#include <string_view>

namespace {

constexpr std::string_view usage = "usage: bench-model OUT\n";
constexpr std::string_view help =
    "\n"
    "Writes to OUT a GGUF model of 986 MB for benchmarks. It has the shape and the tokenizer of\n"
    "Qwen2.5-1.5B-Instruct in Q4_K_M but arbitrary weights: it takes as long, and what it "
    "generates\n"
    "is nonsense that never ends.\n";

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && argv[1] == std::string_view("--help")) {
        std::cout << usage << help;
        return 0;
    }
    if (argc != 2) {
        std::cerr << usage;
        return 2;
    }
    try {
        BenchModel::write(argv[1]);
    } catch (const std::exception& error) {
        std::cerr << "bench-model: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
