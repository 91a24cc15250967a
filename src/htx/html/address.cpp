#include "htx/html/address.h"

#include "text/ascii.h"

#include <algorithm>
#include <vector>

namespace quill::htx {
namespace {

constexpr std::string_view blanks = " \t\n\r\f";

constexpr bool is_letter(char c) {
    return text::lower(c) >= 'a' && text::lower(c) <= 'z';
}

constexpr bool is_alphanumeric(char c) {
    return is_letter(c) || (c >= '0' && c <= '9');
}

constexpr int hex_digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char l = text::lower(c);
    return l >= 'a' && l <= 'f' ? l - 'a' + 10 : -1;
}

/// Returns the address without blanks at its ends, and without tabs and line ends anywhere.
std::string cleaned(std::string_view address) {
    address.remove_prefix(std::min(address.find_first_not_of(blanks), address.size()));
    address = address.substr(0, address.find_last_not_of(blanks) + 1);
    std::string out;
    std::copy_if(address.begin(), address.end(), std::back_inserter(out),
                 [](char c) { return c != '\t' && c != '\n' && c != '\r' && c != '\0'; });
    return out;
}

/// Returns the scheme before the first colon, in lower case; empty if there is none.
std::string scheme_of(std::string_view address) {
    const std::size_t colon = address.find(':');
    if (colon == std::string_view::npos || colon == 0 || !is_letter(address.front())) return {};
    const std::string_view scheme = address.substr(0, colon);
    const bool fits = std::all_of(scheme.begin(), scheme.end(),
                                  [](char c) { return is_alphanumeric(c) || c == '+' || c == '-' || c == '.'; });
    return fits ? text::to_lower(scheme) : std::string();
}

/// Removes "." and ".." from a path. Returns false if it climbs above its root.
bool normalise(std::string& path) {
    std::vector<std::string_view> parts;
    bool climbs = false;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string_view part = std::string_view(path).substr(begin, end - begin);
        if (part == "..") {
            climbs = climbs || parts.empty();
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        begin = end + 1;
    }
    std::string out;
    for (const std::string_view part : parts) {
        if (!out.empty()) out += '/';
        out += part;
    }
    path = std::move(out);
    return !climbs;
}

std::string directory_of(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return std::string(path.substr(0, slash == std::string_view::npos ? 0 : slash + 1));
}

}  // namespace

Address resolve(std::string_view page, std::string_view address) {
    std::string rest = cleaned(address);
    const std::string scheme = scheme_of(rest);
    if (scheme == "file" || scheme.size() == 1) return {AddressKind::climbing, {}, {}, {}};
    if (!scheme.empty()) return {AddressKind::elsewhere, {}, {}, {}};
    Address out;
    if (const std::size_t sharp = rest.find('#'); sharp != std::string::npos) {
        out.fragment = decode_percents(std::string_view(rest).substr(sharp + 1));
        rest.resize(sharp);
    }
    rest.resize(std::min(rest.find('?'), rest.size()));
    if (rest.starts_with("\\\\")) return {AddressKind::climbing, {}, {}, {}};
    std::replace(rest.begin(), rest.end(), '\\', '/');
    if (rest.starts_with("//")) return {AddressKind::elsewhere, {}, {}, {}};
    if (rest.empty()) {
        out.path = out.written_path = page;
        normalise(out.path);
        return out;
    }
    const std::string directory = rest.starts_with('/') ? std::string() : directory_of(page);
    out.written_path = directory + rest;
    out.path = directory + decode_percents(rest);
    const bool stays = normalise(out.path);
    const bool stays_as_written = normalise(out.written_path);
    if (!stays || !stays_as_written || out.path.find('\0') != std::string::npos)
        return {AddressKind::climbing, {}, {}, {}};
    return out;
}

Address resolve(std::string_view page, std::string_view base, std::string_view address) {
    if (base.empty()) return resolve(page, address);
    const Address from = resolve(page, base);
    Address out = resolve("", address);
    if (from.kind != AddressKind::local)
        return out.kind == AddressKind::elsewhere ? out : Address{from.kind, {}, {}, {}};
    // The base directory ends at the base's last slash.
    const bool names_directory = base.ends_with('/');
    return resolve(names_directory && !from.path.empty() ? from.path + "/" : from.path, address);
}

std::string decode_percents(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_code =
            text[i] == '%' && i + 2 < text.size() && hex_digit(text[i + 1]) >= 0 && hex_digit(text[i + 2]) >= 0;
        out += is_code ? static_cast<char>(hex_digit(text[i + 1]) * 16 + hex_digit(text[i + 2])) : text[i];
        if (is_code) i += 2;
    }
    return out;
}

std::string encode_percents(std::string_view path) {
    constexpr std::string_view harmless = " -._~!$'()*+,;=@/";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const char c = path[i];
        const bool is_lost = c == ' ' && (i == 0 || i + 1 == path.size());
        if (!is_lost && (is_alphanumeric(c) || harmless.find(c) != std::string_view::npos)) {
            out += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            out.append(1, '%').append(1, digits[byte / 16]).append(1, digits[byte % 16]);
        }
    }
    return out;
}

}  // namespace quill::htx
