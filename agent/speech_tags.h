#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace agent {

/// The tags that a line may hold.
enum class TagName { Chr, Ctx, Emp, Lst, Map, Mrk, Pau, Pit, Spd, Vol, Rst };

/// One tag as it stands in a line.
struct SpeechTag {
    TagName name{};
    std::size_t length = 0;        ///< in the line, both backslashes included
    std::uint32_t number = 0;      ///< of Mrk, Pau, Pit, Spd, Vol
    std::size_t choice = 0;        ///< of Chr: Normal, Monotone, Whisper; of Ctx: Unknown, Address, E-mail
    std::string_view spoken = {};  ///< of Map; part of the line
    std::string_view shown = {};   ///< of Map; part of the line
};

/// The tag that begins with the backslash at the start of `line`; nothing if that is no tag.
std::optional<SpeechTag> readTag(std::string_view line);

}  // namespace agent
