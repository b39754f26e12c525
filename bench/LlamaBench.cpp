#include "LlamaBench.h"

#include "ChatPrompt.h"

#include <QProcess>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <thread>

namespace LlamaBench {

namespace {

QByteArray output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    constexpr int noLimit = -1;
    if (!process.waitForFinished(noLimit) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error("Failed: " + program.toStdString() + ' ' +
                                 arguments.join(' ').toStdString());
    return process.readAllStandardOutput();
}

double tokensPerSecond(const QString& program, const QStringList& arguments)
{
    const QByteArray answer = output(program, arguments);
    return nlohmann::json::parse(answer.begin(), answer.end()).at(0).at("avg_ts").get<double>();
}

} // namespace

EngineRun::Speeds speeds(const std::filesystem::path& program, const std::filesystem::path& model,
                         int promptTokens, int answerTokens)
{
    const unsigned threads = std::max(std::thread::hardware_concurrency(), 4U) - 2; // the engine's
    const QString prompt = QString::number(promptTokens);
    const QString path = QString::fromStdString(program.string());
    const QStringList all{"-m",   QString::fromStdString(model.string()),
                          "-b",   QString::number(ChatPrompt::contextTokens),
                          "-ub",  "512",
                          "-ngl", "99",
                          "-t",   QString::number(threads),
                          "-r",   "1",
                          "-o",   "json"};
    const QString generated = QString::number(answerTokens);
    return {tokensPerSecond(path, all + QStringList{"-n", "0", "-p", prompt}),
            tokensPerSecond(path, all + QStringList{"-p", "0", "-n", generated, "-d", prompt})};
}

} // namespace LlamaBench
