#include "LlamaBench.h"

#include "ChatPrompt.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <thread>

namespace LlamaBench {

namespace {

struct Close
{
    void operator()(std::FILE* pipe) const { pclose(pipe); }
};

std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char byte : text)
        result += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
    return result + "'";
}

std::string output(const std::string& command)
{
    std::unique_ptr<std::FILE, Close> pipe{popen(command.c_str(), "r")};
    if (!pipe)
        throw std::runtime_error("Cannot run " + command);
    std::string output;
    std::array<char, 4096> buffer{};
    while (const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe.get()))
        output.append(buffer.data(), size);
    if (pclose(pipe.release()) != 0)
        throw std::runtime_error("Failed: " + command);
    return output;
}

double tokensPerSecond(const std::string& command)
{
    return nlohmann::json::parse(output(command)).at(0).at("avg_ts").get<double>();
}

} // namespace

EngineRun::Speeds speeds(const std::filesystem::path& program, const std::filesystem::path& model,
                         int promptTokens, int answerTokens)
{
    const unsigned threads = std::max(std::thread::hardware_concurrency(), 4U) - 2; // the engine's
    const std::string prompt = std::to_string(promptTokens);
    const std::string command = quoted(program.string()) + " -m " + quoted(model.string()) +
                                " -b " + std::to_string(ChatPrompt::contextTokens) +
                                " -ub 512 -ngl 99 -t " + std::to_string(threads) + " -r 1 -o json";
    return {
        tokensPerSecond(command + " -n 0 -p " + prompt),
        tokensPerSecond(command + " -p 0 -n " + std::to_string(answerTokens) + " -d " + prompt)};
}

} // namespace LlamaBench
