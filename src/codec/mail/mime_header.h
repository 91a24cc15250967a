#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The fields of a message's or a part's header as far as they say what follows (RFC 2045, 2046, 2047, 2183, 2231).
namespace quill::codec {

enum class TransferEncoding : std::uint8_t { identity, base64, quoted_printable, uuencode, binhex, yenc };

/// What a header says. Lower case where RFC 2045 ignores case; names are UTF-8, not yet made safe.
struct ContentHeader {
    std::string type;  ///< "image/gif"; empty where there is no Content-Type
    TransferEncoding encoding = TransferEncoding::identity;
    bool has_encoding = false;  ///< a Content-Transfer-Encoding was there and known
    bool has_disposition = false;
    std::string disposition;
    std::string boundary;
    std::string file_name;  ///< of Content-Disposition, else Content-Type
    std::string charset;
    std::string subject;
    std::optional<std::uint64_t> size;            ///< RFC 2183 2.7
    std::optional<std::uint64_t> content_length;  ///< bytes of the encoded body
    std::optional<std::array<unsigned char, 16>> md5;
    std::string partial_id;  ///< message/partial
    std::uint32_t partial_number = 0;
    std::uint32_t partial_total = 0;
    bool is_message = false;  ///< a field that only a message or a part has (From, Subject, Content-Type ...) was there
    bool has_content_field = false;
};

/// The longest field that is looked at, in bytes; what a field holds beyond that is not seen.
constexpr std::size_t longest_field = 64 * 1024;

/// The name of the field that `line` begins (RFC 5322 2.2: printable characters but ':' up to a colon), or empty.
/// Blanks before the colon are passed over.
std::string_view field_name(std::string_view line);

/// Whether a field of that name says something to `take_field`.
bool is_known_field(std::string_view name);

/// Enters the field `name: value`, its lines already joined, into `header`. Of a field that comes twice the first
/// counts.
void take_field(ContentHeader& header, std::string_view name, std::string_view value);

/// A parameter as written: its value without quotes and escapes, nothing decoded yet.
struct Parameter {
    std::string name;  ///< lower case
    std::string value;
};

/// What stands before the first ';', in lower case, then the parameters behind it. Reads what senders write: no quotes
/// round blanks, quotes that never close, doubled ';', backslashes that escape nothing.
struct StructuredValue {
    std::string value;
    std::vector<Parameter> parameters;
};
StructuredValue parse_structured(std::string_view value);

/// The parameter `name` with RFC 2231 pieces joined and character sets and encoded words decoded to UTF-8; empty where
/// there is none. `charset` is what raw 8-bit bytes are in, as far as known.
std::string parameter_text(const StructuredValue& field, std::string_view name, std::string_view charset = {});

}  // namespace quill::codec
