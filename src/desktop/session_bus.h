#pragma once

#include <string>
#include <string_view>

/// The bus of the user's session. Connecting to one that doesn't exist or never answers would block Qt.
namespace quill::desktop {

/// Connects to the socket `path`; one that begins with NUL is in the abstract name space. Returns its descriptor, which
/// the caller closes, or -1 if nobody is listening there.
int connect_to_socket(std::string_view path);

/// Returns the socket of a bus address of the kinds `unix:path=` and `unix:abstract=`; empty for any other address.
std::string socket_of_bus_address(std::string_view address);

/// Returns true if there is a session bus at the address in the environment, or at the user's usual one, and it answers
/// within a second. Otherwise sets the environment so that Qt looks for none.
bool find_session_bus();

}  // namespace quill::desktop
