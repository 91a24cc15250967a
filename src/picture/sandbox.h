#pragma once

/// Shutting a process in, so that whoever takes it over by a hostile picture gets nothing but the picture.
namespace quill::picture {

/// What of the sandbox the system has.
struct Sandbox {
    bool seccomp = false;   ///< system calls that decoding does not need fail
    bool landlock = false;  ///< no file can be opened by name
};

/// Shuts this process in for good: no files, no network, no other programs; bounded memory, time and files. What
/// decoding needs of files must be loaded before. Pictures come and go over `line`.
Sandbox close_sandbox(int line);

}  // namespace quill::picture
