#pragma once

#include <string>

#include "platform/curl/curl_handles.h"
#include "platform/files.h"

namespace velmora::curl {

/// The cookies of all transfers of a thread, and the file that keeps those of them that are to outlive the
/// program: a line each, in the format that browsers once shared, readable by its owner only. Belongs to one
/// thread, as do the transfers that use it.
class CookieJar {
public:
    /// Takes the cookies from the file. What is no cookie is passed over, and so is a file that can't be
    /// read or is larger than a jar gets.
    CookieJar(Files& files, std::string path);

    /// To be set as the transfers' share.
    CURLSH* share() const { return share_.get(); }

    /// Writes the file if a cookie that lasts has come or gone. A file that can't be written is left as it
    /// is; the cookies then last as long as the program.
    void save();

    static constexpr std::string_view fileName = "Cookies.txt";

private:
    std::string lasting() const;

    Files& files_;
    std::string path_;
    Share share_;
    Easy keeper_;  // reaches the share's cookies; goes before it
    std::string saved_;
};

}  // namespace velmora::curl
