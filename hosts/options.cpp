#include "hosts/options.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string_view>

#include "base/failure.h"

namespace velmora {
namespace {

struct WrongOption : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Option {
    std::string_view name;
    std::string_view value;  ///< what its value is called, empty for one that takes none
    std::string_view meaning;
    void (*apply)(Options&, const std::string& value);
};

void setFolder(Options& options, const std::string& value) {
    if (value.empty()) throw WrongOption("--folder needs the name of a folder");
    options.folder = value;
}

void setAddress(Options& options, const std::string& value) {
    std::array<unsigned char, sizeof(in6_addr)> parsed{};
    if (inet_pton(AF_INET, value.c_str(), parsed.data()) != 1 &&
        inet_pton(AF_INET6, value.c_str(), parsed.data()) != 1) {
        throw WrongOption("not an address: " + value);
    }
    options.address = value;
}

void setClock(Options& options, const std::string& value) {
    constexpr std::size_t length = std::string_view("YYYY-MM-DD HH:MM:SS").size();
    try {
        if (value.size() != length) throw Failure(errors::typeMismatch);
        options.clock = toDateTime(value);
    } catch (const Failure&) {
        throw WrongOption("not a time like \"2026-03-05 09:05:00\": " + value);
    }
}

void setSeed(Options& options, const std::string& value) {
    std::uint64_t seed = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), seed);
    if (error != std::errc() || end != value.data() + value.size()) throw WrongOption("not a seed: " + value);
    options.seed = seed;
}

constexpr std::array known{
    Option{"--console", "", "run in the terminal instead of windows",
           [](Options& options, const std::string&) { options.console = true; }},
    Option{"--windows", "", "with --console: show the windows too",
           [](Options& options, const std::string&) { options.windows = true; }},
    Option{"--folder", "DIR", "the application folder; default: the user's data folder", setFolder},
    Option{"--address", "IP", "local address of the peer sockets; default: any", setAddress},
    Option{"--clock", "TIME", "start the program's clock at \"YYYY-MM-DD HH:MM:SS\"", setClock},
    Option{"--seed", "N", "seed the random source", setSeed},
    Option{"--no-open", "", "print what would be opened, but start nothing",
           [](Options& options, const std::string&) { options.open = false; }},
};

std::string usage() {
    std::string text = "Usage: velmora [OPTION]...\nA companion that stands on the desktop.\n\n";
    const auto line = [&text](std::string name, std::string_view meaning) {
        name.resize(std::max<std::size_t>(name.size() + 2, 20), ' ');
        text.append("  ").append(name).append(meaning).append("\n");
    };
    for (const Option& option : known) {
        line(std::string(option.name) + (option.value.empty() ? "" : " ") + std::string(option.value),
             option.meaning);
    }
    line("--help", "print this");
    line("--version", "print the version");
    return text;
}

}  // namespace

std::variant<Options, Usage> parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    try {
        for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
            if (*argument == "--help") return Usage{usage()};
            if (*argument == "--version") return Usage{"velmora " VELMORA_VERSION "\n"};
            const auto equals = argument->find('=');
            const std::string name = argument->substr(0, equals);
            const auto* option = std::find_if(known.begin(), known.end(),
                                              [&name](const Option& row) { return row.name == name; });
            if (option == known.end()) throw WrongOption("unknown option: " + name);
            std::string value;
            if (option->value.empty()) {
                if (equals != std::string::npos) throw WrongOption(name + " takes no value");
            } else if (equals != std::string::npos) {
                value = argument->substr(equals + 1);
            } else if (argument + 1 != arguments.end()) {
                value = *++argument;
            } else {
                throw WrongOption(name + " needs " + std::string(option->value));
            }
            option->apply(options, value);
        }
    } catch (const WrongOption& wrong) {
        return Usage{std::string("velmora: ") + wrong.what() + "\n\n" + usage(), 2};
    }
    return options;
}

}  // namespace velmora
