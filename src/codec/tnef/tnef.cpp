#include "codec/tnef/tnef.h"

#include "codec/mail/charset.h"
#include "codec/tnef/little_endian.h"
#include "codec/tnef/mapi_properties.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace quill::codec::tnef {
namespace {

constexpr std::string_view signature = "\x78\x9F\x3E\x22";
constexpr std::uint64_t header_size = 6;     // the signature and a key
constexpr std::size_t longest_name = 1'024;  // in bytes of the stream

/// The interface of a message within a message, {00020307-0000-0000-C000-000000000046}.
constexpr std::string_view message_interface("\x07\x03\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16);

enum class Level : std::uint8_t { message = 1, attachment = 2 };

// Attributes (MS-OXTNEF 2.1.3.1).
enum AttributeId : std::uint32_t {
    attachment_title = 0x0001'8010,
    message_body = 0x0002'800C,
    attachment_data = 0x0006'800F,
    attachment_begin = 0x0006'9002,  // attAttachRenddata
    message_properties = 0x0006'9003,
    attachment_properties = 0x0006'9005,
    code_page = 0x0006'9007
};

// Properties (MS-OXPROPS).
enum PropertyId : std::uint16_t {
    html = 0x1013,
    display_name = 0x3001,
    attach_data = 0x3701,
    attach_filename = 0x3704,
    attach_long_filename = 0x3707,
    attach_mime_tag = 0x370E
};

struct Attribute {
    Level level = Level::message;
    std::uint32_t id = 0;
    std::string_view data;
    bool cut = false;  ///< the stream ends in it
    bool sum_agrees = false;
};

std::uint16_t sum_of(std::string_view bytes) {
    std::uint32_t sum = 0;
    for (const char c : bytes) sum += static_cast<unsigned char>(c);
    return static_cast<std::uint16_t>(sum);
}

/// Reads the attribute at `fields`; nullopt where none begins there.
std::optional<Attribute> read_attribute(Fields& fields) {
    const auto level = fields.number(1);
    const auto id = fields.number(4);
    const auto size = fields.number(4);
    const bool known = level && (*level == 1 || *level == 2);
    if (!known || !id || !size) return std::nullopt;
    Attribute out{static_cast<Level>(*level), *id, fields.rest().substr(0, *size)};
    const auto data = fields.bytes(*size);
    const auto sum = data ? fields.number(2) : std::nullopt;
    out.cut = !sum;
    out.sum_agrees = sum && *sum == sum_of(out.data);
    return out;
}

/// The part of a string before its NUL that is read as a name.
std::string_view ended(std::string_view bytes) {
    return bytes.substr(0, std::min(bytes.find('\0'), bytes.size()));
}

/// Names of one attachment, from the one that counts most.
using Names = std::array<std::string, 7>;

struct NameRank {
    std::uint16_t id;
    PropertyType type;
    std::size_t rank;
};

constexpr std::size_t title_rank = 2;
constexpr std::array name_ranks = {
    NameRank{attach_long_filename, PropertyType::unicode, 0}, NameRank{attach_long_filename, PropertyType::string8, 1},
    NameRank{attach_filename, PropertyType::unicode, 3},      NameRank{attach_filename, PropertyType::string8, 4},
    NameRank{display_name, PropertyType::unicode, 5},         NameRank{display_name, PropertyType::string8, 6},
};

/// The attachment that is being read.
struct Open {
    std::uint64_t begin = 0;
    Names names;
    std::string content_type;
    std::optional<std::string_view> data;
    bool data_cut = false;
    bool sums_agree = true;
    bool opened = false;  ///< it is a message, and what lies in it is among the files
};

/// One run over a stream and the messages within it.
class Run {
  public:
    Run(std::string_view bytes, const Place& place) : bytes_(bytes), place_(place) {}

    void read(std::string_view stream, unsigned depth);
    Contents finish() && { return std::move(out_); }

  private:
    friend class Stream;
    std::uint64_t offset_of(std::string_view part) const {
        return static_cast<std::uint64_t>(part.data() - bytes_.data());
    }
    void note(ProblemKind kind, std::uint64_t at, std::string text) {
        if (!out_.trouble) out_.trouble = Problem{kind, at, {}, std::move(text), place_.source};
    }
    bool add(FoundFile file, std::string_view data);

    std::string_view bytes_;
    const Place& place_;
    Contents out_;
    bool stopped_ = false;
};

/// One stream of a run.
class Stream {
  public:
    Stream(Run& run, unsigned depth) : run_(run), depth_(depth) {}

    void read(std::string_view stream);

  private:
    void take(const Attribute& attribute);
    void take_of_message(const Attribute& attribute);
    void take_of_attachment(const Attribute& attribute);
    void take_property(const Property& property, const Attribute& attribute);
    void take_object(std::string_view value);
    void add_text(std::string_view text, const Attribute& attribute, std::string_view type);
    void close();
    std::string name_of(std::string_view bytes, PropertyType type) const;

    Run& run_;
    unsigned depth_;
    std::string charset_ = "windows-1252";
    std::optional<Open> open_;
};

bool Run::add(FoundFile file, std::string_view data) {
    const std::uint64_t at = offset_of(data);
    if (out_.files.size() >= place_.most) {
        note(ProblemKind::too_many_files, at, {});
        stopped_ = true;
        return false;
    }
    file.order = static_cast<std::uint32_t>(out_.files.size());
    file.attachment.body = {{at, at + data.size(), place_.source}};
    for (Problem& problem : file.attachment.problems) problem.source = place_.source;
    out_.files.push_back(std::move(file));
    return true;
}

void Run::read(std::string_view stream, unsigned depth) {
    Stream(*this, depth).read(stream);
}

void Stream::read(std::string_view stream) {
    Fields fields(stream.substr(std::min<std::size_t>(header_size, stream.size())));
    if (stream.size() < header_size) run_.note(ProblemKind::cut_off, run_.offset_of(stream), {});
    while (!fields.at_end() && !run_.stopped_) {
        const std::string_view rest = fields.rest();
        const std::uint64_t at = run_.offset_of(rest);
        if (run_.place_.on_read && !run_.place_.on_read(at)) run_.stopped_ = true;
        const std::optional<Attribute> attribute = read_attribute(fields);
        if (!attribute) {
            if (rest.find_first_not_of(std::string_view("\0\r\n", 3)) == std::string_view::npos) break;
            run_.note(ProblemKind::cut_off, at, "The data of the TNEF stream breaks off, or is damaged here");
            break;
        }
        if (attribute->cut) run_.note(ProblemKind::cut_off, at, "The TNEF stream ends in the middle");
        take(*attribute);
        if (attribute->cut) break;
    }
    close();
}

void Stream::take(const Attribute& attribute) {
    if (attribute.level == Level::message) {
        take_of_message(attribute);
    } else {
        take_of_attachment(attribute);
    }
}

void Stream::take_of_message(const Attribute& attribute) {
    if (attribute.id == code_page) {
        const auto page = Fields(attribute.data).number(4);
        if (page && attribute.sum_agrees) charset_ = "cp" + std::to_string(*page);
    } else if (attribute.id == message_body) {
        add_text(ended(attribute.data), attribute, "text/plain");
    } else if (attribute.id == message_properties) {
        read_properties(attribute.data, [&](const Property& property) {
            const bool is_text = property.id == html && property.type == PropertyType::binary;
            if (is_text) add_text(property.value, attribute, "text/html");
        });
    }
}

void Stream::take_of_attachment(const Attribute& attribute) {
    const bool second_data = attribute.id == attachment_data && open_ && open_->data;
    if (attribute.id == attachment_begin || second_data) close();
    if (!open_) open_.emplace().begin = run_.offset_of(attribute.data);
    open_->sums_agree = open_->sums_agree && (attribute.sum_agrees || attribute.cut);
    if (attribute.id == attachment_title) {
        open_->names[title_rank] = name_of(attribute.data, PropertyType::string8);
    } else if (attribute.id == attachment_data) {
        open_->data = attribute.data;
        open_->data_cut = attribute.cut;
    } else if (attribute.id == attachment_properties) {
        const bool whole =
            read_properties(attribute.data, [&](const Property& property) { take_property(property, attribute); });
        if (!whole && !open_->data) {
            run_.note(ProblemKind::unopened_message, run_.offset_of(attribute.data),
                      "Properties of an attachment in a TNEF stream can't be read");
        }
    }
}

void Stream::take_property(const Property& property, const Attribute& attribute) {
    for (const NameRank& row : name_ranks) {
        if (row.id == property.id && row.type == property.type) {
            open_->names.at(row.rank) = name_of(property.value, property.type);
        }
    }
    if (property.id == attach_mime_tag) {
        open_->content_type = text::to_lower(name_of(property.value, property.type));
    } else if (property.id == attach_data && property.type == PropertyType::object) {
        take_object(property.value);
    } else if (property.id == attach_data && property.type == PropertyType::binary && !open_->data) {
        open_->data = property.value;
        open_->data_cut = attribute.cut;
    }
}

/// Reads a message within the message; other objects stay unopened.
void Stream::take_object(std::string_view value) {
    if (!value.starts_with(message_interface) || depth_ >= deepest) return;
    const std::string_view stream = value.substr(message_interface.size());
    if (!has_signature(stream)) return;
    const std::size_t before = run_.out_.files.size();
    run_.read(stream, depth_ + 1);
    open_->opened = std::any_of(run_.out_.files.begin() + static_cast<std::ptrdiff_t>(before), run_.out_.files.end(),
                                [](const FoundFile& file) { return !file.attachment.message_text; });
}

void Stream::add_text(std::string_view text, const Attribute& attribute, std::string_view type) {
    FoundFile file;
    file.attachment.message_text = true;
    file.attachment.content_type = type;
    const std::uint64_t at = run_.offset_of(text);
    if (attribute.cut) file.attachment.problems.push_back({ProblemKind::cut_off, at});
    if (!attribute.cut && !attribute.sum_agrees) file.attachment.problems.push_back({ProblemKind::bad_sum, at});
    if (attribute.sum_agrees) file.attachment.checked_sum = Claim::agrees;
    run_.add(std::move(file), text);
}

/// Ends the attachment that is open, if there is one.
void Stream::close() {
    if (!open_) return;
    const Open open = std::move(*open_);
    open_.reset();
    if (!open.data) {
        if (!open.opened) {
            run_.note(ProblemKind::unopened_message, open.begin, "An object in a TNEF stream can't be opened");
        }
        return;
    }
    FoundFile file;
    const auto* const name =
        std::find_if(open.names.begin(), open.names.end(), [](const std::string& s) { return !s.empty(); });
    if (name != open.names.end()) file.attachment.name = *name;
    file.attachment.content_type = open.content_type;
    const std::uint64_t at = run_.offset_of(*open.data);
    if (open.data_cut) {
        file.attachment.problems.push_back({ProblemKind::cut_off, at + open.data->size()});
    } else if (open.sums_agree) {
        file.attachment.checked_sum = Claim::agrees;
    }
    if (!open.sums_agree) file.attachment.problems.push_back({ProblemKind::bad_sum, at});
    run_.add(std::move(file), *open.data);
}

std::string Stream::name_of(std::string_view bytes, PropertyType type) const {
    bytes = bytes.substr(0, longest_name);
    if (type != PropertyType::unicode) return to_utf8(ended(bytes), charset_);
    const std::string name = to_utf8(bytes.substr(0, bytes.size() / 2 * 2), "utf-16le");
    return std::string(ended(name));
}

}  // namespace

bool has_signature(std::string_view bytes) {
    return bytes.starts_with(signature);
}

Contents read(std::string_view bytes, const Place& place) {
    Run run(bytes, place);
    run.read(bytes, 1);
    return std::move(run).finish();
}

}  // namespace quill::codec::tnef
