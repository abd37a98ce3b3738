#include "agent/voice/flite_words.h"

#include <string_view>

#include "agent/voice/plain_text.h"

namespace agent {
namespace {

constexpr const char* wordIndex = "line_word";

struct CloseTokens {
    void operator()(cst_tokenstream* stream) const { ts_close(stream); }
};
using Tokens = std::unique_ptr<cst_tokenstream, CloseTokens>;

const char* textFeature(const cst_utterance& tree, const char* name) {
    return get_param_string(tree.features, name, nullptr);
}

void stress(cst_item* token) {
    constexpr float emphasised = 1.25F;
    item_set_float(token, "local_duration_stretch", emphasised);
}

void addTokens(const cst_utterance& tree, cst_relation& relation, const SpokenWord& word, int index) {
    const std::string text = toPlainText(word.spoken);
    const Tokens stream(ts_open_string(
        text.c_str(), textFeature(tree, "text_whitespace"), textFeature(tree, "text_singlecharsymbols"),
        textFeature(tree, "text_prepunctuation"), textFeature(tree, "text_postpunctuation")));
    while (stream && ts_eof(stream.get()) == 0) {
        const char* name = ts_get(stream.get());
        if (*name == '\0') continue;
        cst_item* token = relation_append(&relation, nullptr);
        item_set_string(token, "name", name);
        item_set_string(token, "whitespace", stream->whitespace);
        item_set_string(token, "prepunctuation", stream->prepunctuation);
        item_set_string(token, "punc", stream->postpunctuation);
        item_set_int(token, wordIndex, index);
        if (word.stressed) stress(token);
    }
}

// In place of the library's analysis.
cst_utterance* takeAsRead(cst_utterance* tree) {
    cst_relation* words = utt_relation_create(tree, "Word");
    for (cst_item* token = relation_head(utt_relation(tree, "Token")); token != nullptr;
         token = item_next(token)) {
        cst_item* word = item_add_daughter(token, nullptr);
        item_set_string(word, "name", item_feat_string(token, "name"));
        relation_append(words, word);
    }
    return tree;
}

}  // namespace

bool addText(cst_utterance& tree, std::span<const SpokenWord> words) {
    cst_relation* tokens = utt_relation_create(&tree, "Token");
    for (std::size_t i = 0; i < words.size(); ++i) addTokens(tree, *tokens, words[i], static_cast<int>(i));
    return relation_head(tokens) != nullptr;
}

std::vector<std::string> readAs(cst_utterance& tree) {
    constexpr std::size_t longestWord = 35;
    std::vector<std::string> read;
    default_textanalysis(&tree);
    for (const cst_item* word = relation_head(utt_relation(&tree, "Word")); word != nullptr;
         word = item_next(word)) {
        // What has more letters than any word is cut, as no analysis takes it for several.
        std::string_view name = item_feat_string(word, "name");
        for (; name.size() > longestWord; name.remove_prefix(longestWord))
            read.emplace_back(name.substr(0, longestWord));
        read.emplace_back(name);
    }
    return read;
}

void addRead(cst_utterance& tree, std::span<const std::string> read, bool stressed) {
    feat_set(tree.features, "textanalysis_func", uttfunc_val(&takeAsRead));
    cst_relation* tokens = utt_relation_create(&tree, "Token");
    for (const std::string& name : read) {
        cst_item* token = relation_append(tokens, nullptr);
        item_set_string(token, "name", name.c_str());
        for (const char* feature : {"whitespace", "prepunctuation", "punc"})
            item_set_string(token, feature, "");
        item_set_int(token, wordIndex, 0);
        if (stressed) stress(token);
    }
}

int wordOf(const cst_item* sound) {
    const cst_item* syllable = item_parent(item_as(sound, "SylStructure"));
    const cst_item* word = syllable != nullptr ? item_parent(syllable) : nullptr;
    const cst_item* token = word != nullptr ? item_parent(item_as(word, "Token")) : nullptr;
    return token != nullptr ? item_feat_int(token, wordIndex) : -1;
}

}  // namespace agent
