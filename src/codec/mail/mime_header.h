#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The fields of a message's or a part's header that describe its body (RFC 2045, 2046, 2047, 2183, 2231).
namespace quill::codec {

enum class TransferEncoding : std::uint8_t { identity, base64, quoted_printable, uuencode, binhex, yenc };

/// The facts in a header. Lower case if RFC 2045 ignores case; names are UTF-8, not yet made safe.
struct ContentHeader {
    std::string type;  ///< "image/gif"; empty if there is no Content-Type
    TransferEncoding encoding = TransferEncoding::identity;
    bool has_encoding = false;  ///< there was a known Content-Transfer-Encoding
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
    bool is_message = false;  ///< it has a field that only a message or a part has (From, Subject, Content-Type ...)
    bool has_content_field = false;
};

/// The longest field that is read, in bytes; the rest of a longer one is ignored.
constexpr std::size_t longest_field = 64 * 1024;

/// Returns the name of the field that `line` begins (RFC 5322 2.2: printable characters except ':' up to a colon), or
/// an empty text. Skips blanks before the colon.
std::string_view field_name(std::string_view line);

/// Returns true if `take_field` uses a field of that name.
bool is_known_field(std::string_view name);

/// Enters the field `name: value`, its lines already joined, into `header`. Of a repeated field the first counts.
void take_field(ContentHeader& header, std::string_view name, std::string_view value);

/// A parameter as written: its value without quotes and escapes, otherwise not decoded yet.
struct Parameter {
    std::string name;  ///< lower case
    std::string value;
};

/// The text before the first ';', in lower case, then the parameters after it. Tolerates common errors: no quotes
/// around blanks, quotes that never close, doubled ';', backslashes that escape nothing.
struct StructuredValue {
    std::string value;
    std::vector<Parameter> parameters;
};
StructuredValue parse_structured(std::string_view value);

/// Returns the parameter `name` with RFC 2231 pieces joined and character sets and encoded words decoded to UTF-8;
/// empty if there is none. `charset` is that of raw 8-bit bytes, as far as known.
std::string parameter_text(const StructuredValue& field, std::string_view name, std::string_view charset = {});

}  // namespace quill::codec
