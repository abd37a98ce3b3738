#define ORT_API_MANUAL_INIT
#include <dlfcn.h>
#include <onnxruntime_cxx_api.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "agent/hearing/writing_model.h"

namespace agent {
namespace {

// What the model is made of.
constexpr std::int64_t heads = 8;
constexpr std::int64_t headWidth = 36;
constexpr int layers = 6;

/// The names under which the model takes what it remembers, and gives it. What it remembers of the sound
/// stays the same; what it remembers of a text grows with it.
struct MemoryNames {
    std::vector<std::string> taken;
    std::vector<std::string> given;
};

MemoryNames memoryNames(const std::string& of) {
    MemoryNames names;
    for (int layer = 0; layer < layers; ++layer) {
        for (const char* kind : {"key", "value"}) {
            const std::string name = std::to_string(layer) + "." + of + "." + kind;
            names.taken.push_back("past_key_values." + name);
            names.given.push_back("present." + name);
        }
    }
    return names;
}

/// Numbers in several dimensions, the outermost being the rows.
struct Block {
    std::vector<float> values;
    std::vector<std::int64_t> shape;

    std::size_t rowSize() const {
        std::size_t size = 1;
        for (std::size_t i = 1; i < shape.size(); ++i) size *= static_cast<std::size_t>(shape[i]);
        return size;
    }

    void keepRows(const std::vector<std::size_t>& rows) {
        std::vector<float> kept;
        kept.reserve(rows.size() * rowSize());
        for (const std::size_t row : rows) {
            const auto begin = values.begin() + static_cast<std::ptrdiff_t>(row * rowSize());
            kept.insert(kept.end(), begin, begin + static_cast<std::ptrdiff_t>(rowSize()));
        }
        values = std::move(kept);
        shape.at(0) = static_cast<std::int64_t>(rows.size());
    }
};

/// Throws std::runtime_error if these are not numbers in so many rows.
Block blockOf(const Ort::Value& value, std::size_t rows) {
    const auto form = value.GetTensorTypeAndShapeInfo();
    if (form.GetElementType() != ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT || form.GetShape().empty() ||
        form.GetShape().front() != static_cast<std::int64_t>(rows) || form.GetElementCount() == 0)
        throw std::runtime_error("the model of speech is another one");
    const auto* data = value.GetTensorData<float>();
    return {std::vector<float>(data, data + form.GetElementCount()), form.GetShape()};
}

/// The library's entry, or null. The library stays loaded.
const OrtApi* openLibrary(const std::string& path) {
    void* library = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) return nullptr;
    void* entry = dlsym(library, "OrtGetApiBase");
    if (entry == nullptr) return nullptr;
    const OrtApiBase* base = reinterpret_cast<const OrtApiBase* (*)()>(entry)();
    return base->GetApi(ORT_API_VERSION);
}

Ort::SessionOptions options() {
    Ort::SessionOptions options;
    options.SetIntraOpNumThreads(1);
    options.SetInterOpNumThreads(1);
    // The model's numbers are unpacked once, not for each token.
    options.AddConfigEntry("session.disable_quant_qdq", "1");
    options.AddConfigEntry("session.use_env_allocators", "1");
    return options;
}

Ort::Env environment() {
    Ort::Env environment(ORT_LOGGING_LEVEL_FATAL);
    // Memory grows by what is needed, not by doubling.
    constexpr int asRequested = 1;
    const Ort::ArenaCfg growth(0, asRequested, -1, -1);
    environment.CreateAndRegisterAllocator(Ort::MemoryInfo::CreateCpu(OrtArenaAllocator, OrtMemTypeDefault),
                                           growth);
    return environment;
}

class OnnxModel : public WritingModel {
public:
    explicit OnnxModel(const std::string& folder)
        : encoder_(environment_, (folder + "/encoder.onnx").c_str(), options()),
          decoder_(environment_, (folder + "/decoder.onnx").c_str(), options()) {}

    NextTokens hear(std::span<const float> samples) override {
        const std::array<std::int64_t, 2> shape{1, static_cast<std::int64_t>(samples.size())};
        std::vector<float> copy(samples.begin(), samples.end());
        const auto input =
            Ort::Value::CreateTensor<float>(memory_, copy.data(), copy.size(), shape.data(), shape.size());
        const char* inputName = "input_values";
        const char* outputName = "last_hidden_state";
        auto heard = encoder_.Run(Ort::RunOptions{nullptr}, &inputName, &input, 1, &outputName, 1);
        sound_ = blockOf(heard.front(), 1);
        soundMemory_.assign(soundNames_.taken.size(), {{}, {0, heads, 1, headWidth}});
        textMemory_ = soundMemory_;
        const Token first = Tokens::begin;
        firstAnswer_ = run({&first, 1}, false);
        firstMemory_ = textMemory_;
        // The same for every text that may follow.
        const std::vector<std::size_t> rows(mostTexts, 0);
        sound_.keepRows(rows);
        for (Block& block : soundMemory_) block.keepRows(rows);
        return firstAnswer_;
    }

    NextTokens again() override {
        textMemory_ = firstMemory_;
        return firstAnswer_;
    }

    NextTokens goOn(std::span<const Text> texts) override {
        std::vector<std::size_t> rows;
        std::vector<Token> tokens;
        for (const auto& [row, token] : texts) {
            rows.push_back(row);
            tokens.push_back(token);
        }
        for (Block& block : textMemory_) block.keepRows(rows);
        return run(tokens, true);
    }

private:
    /// So many rows of a block, which may hold more.
    Ort::Value tensor(Block& block, std::size_t rows) const {
        std::vector<std::int64_t> shape = block.shape;
        if (shape.at(0) > 0) shape[0] = static_cast<std::int64_t>(rows);
        const std::size_t size = std::min(rows * block.rowSize(), block.values.size());
        return Ort::Value::CreateTensor<float>(memory_, block.values.data(), size, shape.data(),
                                               shape.size());
    }

    NextTokens run(std::span<const Token> tokens, bool again) {
        const std::size_t rows = tokens.size();
        std::vector<std::int64_t> ids(tokens.begin(), tokens.end());
        const std::array<std::int64_t, 2> idShape{static_cast<std::int64_t>(rows), 1};
        bool useMemory = again;
        const std::int64_t one = 1;

        std::vector<const char*> names{"input_ids", "use_cache_branch", "encoder_hidden_states"};
        std::vector<Ort::Value> inputs;
        inputs.push_back(Ort::Value::CreateTensor<std::int64_t>(memory_, ids.data(), ids.size(),
                                                                idShape.data(), idShape.size()));
        inputs.push_back(Ort::Value::CreateTensor<bool>(memory_, &useMemory, 1, &one, 1));
        inputs.push_back(tensor(sound_, rows));
        std::vector<const char*> outputs{"logits"};
        for (const auto& [memoryNames, blocks] :
             {std::pair(&textNames_, &textMemory_), std::pair(&soundNames_, &soundMemory_)}) {
            for (std::size_t i = 0; i < blocks->size(); ++i) {
                names.push_back(memoryNames->taken[i].c_str());
                inputs.push_back(tensor((*blocks)[i], rows));
            }
        }
        for (const std::string& name : textNames_.given) outputs.push_back(name.c_str());
        if (!again) {
            for (const std::string& name : soundNames_.given) outputs.push_back(name.c_str());
        }
        const auto given = decoder_.Run(Ort::RunOptions{nullptr}, names.data(), inputs.data(), inputs.size(),
                                        outputs.data(), outputs.size());
        for (std::size_t i = 0; i < textMemory_.size(); ++i) textMemory_[i] = blockOf(given[1 + i], rows);
        if (!again) {
            for (std::size_t i = 0; i < soundMemory_.size(); ++i)
                soundMemory_[i] = blockOf(given[1 + textMemory_.size() + i], rows);
        }
        Block logits = blockOf(given.front(), rows);
        const std::size_t width = logits.values.size() / rows;
        return {std::move(logits.values), width};
    }

    Ort::Env environment_ = environment();
    Ort::Session encoder_;
    Ort::Session decoder_;
    Ort::MemoryInfo memory_ = Ort::MemoryInfo::CreateCpu(OrtDeviceAllocator, OrtMemTypeCPU);
    const MemoryNames soundNames_ = memoryNames("encoder");
    const MemoryNames textNames_ = memoryNames("decoder");
    Block sound_;
    std::vector<Block> soundMemory_;
    std::vector<Block> textMemory_;
    NextTokens firstAnswer_;  ///< and what the text memory was then
    std::vector<Block> firstMemory_;
};

}  // namespace

std::unique_ptr<WritingModel> WritingModel::load(const std::string& folder) {
    const OrtApi* library = openLibrary(folder + "/libonnxruntime.so");
    if (library == nullptr) return nullptr;
    static std::once_flag once;  // its C++ interface keeps the entry for the whole process
    std::call_once(once, [library] { Ort::InitApi(library); });
    try {
        return std::make_unique<OnnxModel>(folder);
    } catch (const std::exception&) {
        return nullptr;
    }
}

}  // namespace agent
