#pragma once

#include "AppError.h"
#include "LlamaEngine.h"
#include "StandinModel.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

/// An engine, a folder for its models, and what it has told.
class EngineFixture : public testing::Test
{
protected:
    void SetUp() override
    {
        m_folder = std::filesystem::path(std::getenv("HOME")) /
                   testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::create_directories(m_folder);
    }

    std::filesystem::path model(const StandinModel::Script& script,
                                const std::string& name = "model.gguf")
    {
        StandinModel::write(script, m_folder / name);
        return m_folder / name;
    }

    /// Generates and keeps the updates.
    std::string generate(const std::filesystem::path& path, int maxTokens = 500,
                         const std::string& user = "Please spell it.")
    {
        m_updates.clear();
        return m_engine.generate(path, "You spell.", user, maxTokens, m_token,
                                 [this](const std::string& text) { m_updates.push_back(text); });
    }

    std::string errorOf(const std::filesystem::path& path,
                        const std::string& user = "Please spell it.")
    {
        try {
            generate(path, 10, user);
        } catch (const AppError& error) {
            return error.message();
        }
        return "no error";
    }

    std::filesystem::path m_folder;
    LlamaEngine m_engine;
    CancelToken m_token;
    std::vector<std::string> m_updates;
};
