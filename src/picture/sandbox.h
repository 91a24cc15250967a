#pragma once

/// Confines a process, so that an attacker who takes it over with a hostile picture gains nothing but the picture.
namespace quill::picture {

/// The parts of the sandbox that the system supports.
struct Sandbox {
    bool seccomp = false;   ///< system calls that decoding does not need fail
    bool landlock = false;  ///< no file can be opened by name
};

/// Confines this process permanently: no files, no network, no other programs; bounded memory, time and files. Files
/// that decoding needs must be loaded first. Pictures are exchanged over `line`.
Sandbox close_sandbox(int line);

}  // namespace quill::picture
