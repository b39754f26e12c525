#include "AppError.h"
#include "GgufWriter.h"
#include "LlamaEngine.h"
#include "ModelCheck.h"
#include "Qwen2Layout.h"
#include "StandinModel.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* notLoaded = "Could not load the language model.";
constexpr const char* noContext = "Could not create the model context.";
constexpr const char* notUsable = "Model not loaded.";
constexpr const char* notEvaluated = "Model evaluation failed (-3).";

/// A tensor in place of one of the small model's: all its bytes come from repeating `pattern`.
struct Replacement
{
    std::string name;
    ggml_type type = GGML_TYPE_F32;
    std::array<unsigned char, 4> pattern{};
};

/// Writes a model of one layer whose tokens are single letters. `change` alters its metadata.
void writeModel(const fs::path& path, const std::function<void(gguf_context*)>& change,
                const Replacement& replacement = {})
{
    constexpr Qwen2Layout::Shape shape{1, 64, 64, 1, 1};
    GgufWriter writer;
    gguf_context* metadata = writer.metadata();
    Qwen2Layout::setHyperparameters(metadata, shape);
    std::vector<std::string> letters;
    for (char letter = '!'; letter <= '~'; ++letter)
        letters.emplace_back(1, letter);
    std::vector<const char*> tokens;
    for (const std::string& letter : letters)
        tokens.push_back(letter.c_str());
    gguf_set_val_str(metadata, "tokenizer.ggml.model", "gpt2");
    gguf_set_val_str(metadata, "tokenizer.ggml.pre", "qwen2");
    gguf_set_arr_str(metadata, "tokenizer.ggml.tokens", tokens.data(), tokens.size());
    gguf_set_arr_str(metadata, "tokenizer.ggml.merges", nullptr, 0);
    change(metadata);

    const auto add = [&](const std::string& name, std::int64_t columns, std::int64_t rows) {
        const bool replaced = name == replacement.name;
        const Replacement tensor = replaced ? replacement : Replacement{name};
        writer.addTensor(name, tensor.type, columns, rows,
                         [tensor](std::int64_t, std::span<std::byte> row) {
                             for (std::size_t at = 0; at < row.size(); ++at)
                                 row[at] = std::byte{tensor.pattern[at % tensor.pattern.size()]};
                         });
    };
    add("token_embd.weight", shape.width, static_cast<std::int64_t>(tokens.size()));
    add("output_norm.weight", shape.width, 1);
    for (const Qwen2Layout::Tensor& tensor : Qwen2Layout::layerTensors(shape, 0))
        add(tensor.name, tensor.columns, tensor.rows);
    writer.write(path);
}

/// Makes the model one of the architecture `name`, with the same hyperparameters.
void setArchitecture(gguf_context* metadata, const std::string& name)
{
    constexpr std::string_view prefix = "qwen2";
    gguf_set_val_str(metadata, "general.architecture", name.c_str());
    for (std::int64_t key = gguf_get_n_kv(metadata) - 1; key >= 0; --key) {
        const std::string old = gguf_get_key(metadata, key);
        if (!old.starts_with(prefix))
            continue;
        const std::string renamed = name + old.substr(prefix.size());
        if (gguf_get_kv_type(metadata, key) == GGUF_TYPE_UINT32)
            gguf_set_val_u32(metadata, renamed.c_str(), gguf_get_val_u32(metadata, key));
        else
            gguf_set_val_f32(metadata, renamed.c_str(), gguf_get_val_f32(metadata, key));
    }
}

class HostileModelTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_folder = fs::path(std::getenv("HOME")) /
                   testing::UnitTest::GetInstance()->current_test_info()->name();
        fs::create_directories(m_folder);
        m_good = m_folder / "good.gguf";
        StandinModel::write({StandinModel::split("All is well.")}, m_good);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }

    /// Nothing may have been printed, and nothing hinders the good model.
    void TearDown() override
    {
        LlamaEngine engine;
        EXPECT_EQ(outcome(engine, m_good), "All is well.");
        if (!m_keepsModel) {
            EXPECT_EQ(outcome(m_engine, m_good), "All is well.");
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        fs::remove_all(m_folder);
    }

    /// The answer or the message of the error.
    static std::string outcome(LlamaEngine& engine, const fs::path& path,
                               const std::string& user = "Hello!")
    {
        try {
            return engine.generate(path, "", user, 8, CancelToken(), [](const std::string&) {});
        } catch (const AppError& error) {
            return error.message();
        }
    }

    /// What comes of the small model with `change` and `replacement`.
    std::string outcomeOf(const std::function<void(gguf_context*)>& change,
                          const Replacement& replacement = {})
    {
        writeModel(m_folder / "hostile.gguf", change, replacement);
        return outcome(m_engine, m_folder / "hostile.gguf");
    }

    std::string outcomeOf(const Replacement& replacement)
    {
        return outcomeOf([](gguf_context*) {}, replacement);
    }

    std::string outcomeOfBytes(std::string_view bytes)
    {
        const fs::path path = m_folder / "bytes.gguf";
        std::ofstream(path, std::ios::binary) << bytes;
        return outcome(m_engine, path);
    }

    std::string goodBytes() const
    {
        std::ifstream file(m_good, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    fs::path m_folder;
    fs::path m_good;
    LlamaEngine m_engine;
    bool m_keepsModel = false; // whether the engine has loaded a model
};

TEST_F(HostileModelTest, TheSmallModelItselfAnswers)
{
    m_keepsModel = true;
    EXPECT_EQ(outcomeOf(Replacement{}).find("odel"), std::string::npos);
}

TEST_F(HostileModelTest, ATruncatedModelIsRefusedAtEveryLength)
{
    const std::string bytes = goodBytes();
    for (std::size_t length = 0; length < bytes.size(); length += length < 64 ? 1 : 211)
        ASSERT_EQ(outcomeOfBytes(std::string_view(bytes).substr(0, length)), notLoaded) << length;
}

TEST_F(HostileModelTest, WhatIsNoModelIsRefused)
{
    EXPECT_EQ(outcomeOfBytes("Dear reader,\nthis is no model at all.\n"), notLoaded);
    EXPECT_EQ(outcomeOfBytes(std::string("\x1F\x8B\x08\0\0\0\0\0", 8) + goodBytes()), notLoaded);
    EXPECT_EQ(outcomeOfBytes("GGUF" + std::string(1000, '\xFF')), notLoaded);
    EXPECT_EQ(outcomeOfBytes(std::string(1000, '\0')), notLoaded);
}

TEST_F(HostileModelTest, WhatIsNoFileIsRefusedAtOnce)
{
    const fs::path pipe = m_folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(outcome(m_engine, pipe), notLoaded);
    EXPECT_EQ(outcome(m_engine, m_folder), notLoaded);
    EXPECT_EQ(outcome(m_engine, "/dev/zero"), notLoaded);
    EXPECT_EQ(outcome(m_engine, m_folder / "missing.gguf"), notLoaded);
    EXPECT_EQ(outcome(m_engine, ""), notLoaded);
}

TEST_F(HostileModelTest, AModelOfEndlessMetadataIsRefusedAtOnce)
{
    EXPECT_EQ(outcomeOf([](gguf_context* metadata) {
                  for (int key = 0; key < 11'000; ++key)
                      gguf_set_val_bool(metadata, std::to_string(key).c_str(), true);
              }),
              notLoaded);
}

TEST_F(HostileModelTest, AVectorOfNumbersThatCannotBeAddedIsRefused)
{
    for (const ggml_type type : {GGML_TYPE_F16, GGML_TYPE_BF16, GGML_TYPE_Q8_0, GGML_TYPE_I32})
        EXPECT_EQ(outcomeOf({"blk.0.attn_norm.weight", type}), notLoaded) << ggml_type_name(type);
    EXPECT_EQ(outcomeOf({"output_norm.weight", GGML_TYPE_Q8_0}), notLoaded);
    EXPECT_EQ(outcomeOf({"blk.0.attn_v.bias", GGML_TYPE_F16}), notLoaded);
}

TEST_F(HostileModelTest, AMatrixOfNumbersThatCannotBeMultipliedIsRefused)
{
    for (const ggml_type type :
         {GGML_TYPE_I8, GGML_TYPE_I16, GGML_TYPE_I32, GGML_TYPE_I64, GGML_TYPE_F64, GGML_TYPE_Q8_1})
        EXPECT_EQ(outcomeOf({"blk.0.ffn_down.weight", type}), notLoaded) << ggml_type_name(type);
    EXPECT_EQ(outcomeOf({"token_embd.weight", GGML_TYPE_I32}), notLoaded);
}

TEST_F(HostileModelTest, AnEpsilonThatIsNoneIsRefused)
{
    for (const float epsilon :
         {-1.0F, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()})
        EXPECT_EQ(outcomeOf([=](gguf_context* metadata) {
                      gguf_set_val_f32(metadata, "qwen2.attention.layer_norm_rms_epsilon", epsilon);
                  }),
                  notLoaded)
            << epsilon;
}

TEST_F(HostileModelTest, WhatOnlyLooksLikeSuchAnEpsilonIsNone)
{
    const fs::path path = m_folder / "harmless.gguf";
    writeModel(path, [](gguf_context* metadata) {
        gguf_set_val_f32(metadata, "general.number", -1.0F);
        gguf_set_val_str(metadata, "general.epsilon", "none");
        gguf_set_val_f32(metadata, "general.another.epsilon", 0.0F);
    });
    EXPECT_TRUE(ModelCheck::isLoadable(path));
}

TEST_F(HostileModelTest, TheFirstOfTheKeysIsLookedAtToo)
{
    GgufWriter writer;
    gguf_set_val_f32(writer.metadata(), "general.epsilon", -1.0F);
    writer.write(m_folder / "hostile.gguf");
    EXPECT_FALSE(ModelCheck::isLoadable(m_folder / "hostile.gguf"));
    gguf_set_val_f32(writer.metadata(), "general.epsilon", 1.0F);
    writer.write(m_folder / "hostile.gguf");
    EXPECT_TRUE(ModelCheck::isLoadable(m_folder / "hostile.gguf"));
}

TEST_F(HostileModelTest, AHeadThatFillsTheMemoryIsRefused)
{
    for (const std::uint32_t length : {1U << 20, 1U << 24, 1U << 31})
        EXPECT_EQ(outcomeOf([=](gguf_context* metadata) {
                      gguf_set_val_u32(metadata, "qwen2.attention.key_length", length);
                  }),
                  notLoaded)
            << length;
}

TEST_F(HostileModelTest, AModelWithoutHeadsIsRefused)
{
    EXPECT_EQ(outcomeOf([](gguf_context* metadata) {
                  gguf_set_val_u32(metadata, "qwen2.attention.head_count", 0);
              }),
              notLoaded);
}

TEST_F(HostileModelTest, HeadsThatDoNotFitTheTensorsGiveNoContext)
{
    EXPECT_EQ(outcomeOf([](gguf_context* metadata) {
                  gguf_set_val_u32(metadata, "qwen2.attention.key_length", 65);
              }),
              noContext);
}

TEST_F(HostileModelTest, AForeignArchitectureIsRefused)
{
    for (const char* name : {"paddleocr", "jamba", "bert", "t5", "rwkv7", "mamba", "nonsense", ""})
        EXPECT_EQ(outcomeOf([=](gguf_context* metadata) { setArchitecture(metadata, name); }),
                  notLoaded)
            << name;
}

TEST_F(HostileModelTest, AForeignTokenizerIsRefused)
{
    for (const char* name : {"rwkv", "t5", "plamo2", "bert", "nonsense", ""})
        EXPECT_EQ(outcomeOf([=](gguf_context* metadata) {
                      gguf_set_val_str(metadata, "tokenizer.ggml.model", name);
                  }),
                  notLoaded)
            << name;
}

TEST_F(HostileModelTest, AModelWithoutVocabularyIsNotLoaded)
{
    const auto forget = [](gguf_context* metadata) {
        gguf_set_val_str(metadata, "tokenizer.ggml.model", "none");
        gguf_remove_key(metadata, "tokenizer.ggml.tokens");
        gguf_set_val_u32(metadata, "qwen2.vocab_size", '~' - '!' + 1);
    };
    EXPECT_EQ(outcomeOf(forget), notUsable);
}

TEST_F(HostileModelTest, AVocabularyThatCannotExpressThePromptIsNotLoaded)
{
    // A vocabulary of pieces that has neither the line feed nor its byte.
    EXPECT_EQ(outcomeOf([](gguf_context* metadata) {
                  const std::vector<float> scores('~' - '!' + 1);
                  gguf_set_val_str(metadata, "tokenizer.ggml.model", "llama");
                  gguf_set_arr_data(metadata, "tokenizer.ggml.scores", GGUF_TYPE_FLOAT32,
                                    scores.data(), scores.size());
              }),
              notUsable);
}

TEST_F(HostileModelTest, OneFileOfSeveralIsRefused)
{
    EXPECT_EQ(
        outcomeOf([](gguf_context* metadata) { gguf_set_val_u16(metadata, "split.count", 2); }),
        notLoaded);
}

TEST_F(HostileModelTest, WeightsThatAreNoNumbersFailTheEvaluation)
{
    m_keepsModel = true;
    EXPECT_EQ(outcomeOf({"output_norm.weight", GGML_TYPE_F32, {0x00, 0x00, 0xC0, 0x7F}}),
              notEvaluated);
}

TEST_F(HostileModelTest, ADamagedByteNeverEndsTheProcess)
{
    const std::string bytes = goodBytes();
    const std::size_t metadata = 8000;
    for (std::size_t at = 4; at < metadata; at += 601) {
        for (const char byte : {'\0', '\x7F', '\xFF'}) {
            std::string damaged = bytes;
            damaged[at] = byte;
            std::ofstream(m_folder / "damaged.gguf", std::ios::binary) << damaged;
            LlamaEngine engine;
            outcome(engine, m_folder / "damaged.gguf");
        }
    }
}

TEST_F(HostileModelTest, HostileTextIsAnsweredOrFails)
{
    m_keepsModel = true;
    std::string markers;
    while (markers.size() < 3'000'000)
        markers += "<|im_end|>";
    const std::string invalid = "\xF7\xBF\xBF\xBF \xFF\xFE\xED\xA0\x80\xE4";
    for (const std::string& user : {std::string(), std::string(100, '\0'), markers, invalid,
                                    std::string(3'000'000, 'a'), std::string(3'000'000, '\0')}) {
        const std::string result = outcome(m_engine, m_good, user);
        EXPECT_TRUE(result == "All is well." || result == notEvaluated) << result;
    }
}

} // namespace
