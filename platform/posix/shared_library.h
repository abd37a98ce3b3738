#pragma once

namespace velmora {

/// A library that is loaded while the program runs, and stays loaded: one that few sessions need should not
/// lengthen every start.
class SharedLibrary {
public:
    /// `name` is a file name such as "libcurl.so.4", or a path. Throws std::runtime_error if it can't be
    /// loaded.
    explicit SharedLibrary(const char* name);

    /// Points `function` to the function of that name in the library, or in one that the library needs.
    /// Throws std::runtime_error if there is none.
    template <class Function>
    void find(const char* name, Function*& function) const {
        function = reinterpret_cast<Function*>(address(name));
    }

private:
    void* address(const char* name) const;

    void* handle_;
};

}  // namespace velmora
