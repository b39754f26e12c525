#include "StandinModel.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr std::string_view usage = "usage: standin-model SCRIPT OUT\n";
constexpr std::string_view help =
    "\n"
    "Writes to OUT a small GGUF model that spells the text file SCRIPT.\n"
    "\n"
    "The model is a stand-in for demonstrations and tests: it understands nothing, and spells the\n"
    "same text whatever it is asked.\n";

std::string contents(const char* path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::array<char, 65536> block{};
    while (file.read(block.data(), block.size()) || file.gcount() > 0)
        text.append(block.data(), static_cast<std::size_t>(file.gcount()));
    if (!file.eof())
        throw std::runtime_error("The file " + std::string(path) + " cannot be read: " +
                                 std::generic_category().message(errno) + ".");
    return text;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && argv[1] == std::string_view("--help")) {
        std::cout << usage << help;
        return 0;
    }
    if (argc != 3) {
        std::cerr << usage;
        return 2;
    }
    try {
        StandinModel::write({StandinModel::split(contents(argv[1]))}, argv[2]);
    } catch (const std::exception& error) {
        std::cerr << "standin-model: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
