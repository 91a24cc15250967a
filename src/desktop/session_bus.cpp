#include "desktop/session_bus.h"

#include "files/path.h"
#include "htx/html/address.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace quill::desktop {
namespace {

constexpr auto address_variable = "DBUS_SESSION_BUS_ADDRESS";
constexpr timeval longest_wait{.tv_sec = 1, .tv_usec = 0};

std::string bus_address() {
    if (const char* address = std::getenv(address_variable); address != nullptr && *address != '\0') return address;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    return runtime != nullptr ? "unix:path=" + files::join(runtime, "bus") : "";
}

/// Asks for the ways to authenticate, which every bus answers with one line (D-Bus Specification, "Authentication
/// Protocol").
bool answers_as_bus(int connection) {
    constexpr std::string_view question("\0AUTH\r\n", 7);
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &longest_wait, sizeof longest_wait);
    if (send(connection, question.data(), question.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(question.size()))
        return false;
    char first = 0;
    return recv(connection, &first, 1, 0) == 1 && first == 'R';  // "REJECTED", and the ways
}

/// Returns true for a bus that is reached in another way than by a socket here.
bool is_remote(std::string_view address) {
    return !address.empty() && !address.starts_with("autolaunch:") && !address.starts_with("disabled:");
}

}  // namespace

int connect_to_socket(std::string_view path) {
    sockaddr_un address{};
    if (path.empty() || path.size() >= sizeof address.sun_path) return -1;
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size());
    if (connection < 0 || connect(connection, reinterpret_cast<const sockaddr*>(&address), length) == 0)
        return connection;
    close(connection);
    return -1;
}

std::string socket_of_bus_address(std::string_view address) {
    struct Kind {
        std::string_view prefix;
        bool abstract;
    };
    static constexpr std::array<Kind, 2> kinds = {{{"unix:path=", false}, {"unix:abstract=", true}}};
    for (const auto& [prefix, abstract] : kinds) {
        if (!address.starts_with(prefix)) continue;
        address.remove_prefix(prefix.size());
        return std::string(abstract ? 1 : 0, '\0') +
               htx::decode_percents(address.substr(0, address.find_first_of(",;")));
    }
    return {};
}

bool find_session_bus() {
    const std::string address = bus_address();
    const std::string path = socket_of_bus_address(address);
    const int connection = connect_to_socket(path);
    const bool found = path.empty() ? is_remote(address) : connection >= 0 && answers_as_bus(connection);
    if (connection >= 0) close(connection);
    if (!found) setenv(address_variable, "disabled:", 1);
    return found;
}

}  // namespace quill::desktop
