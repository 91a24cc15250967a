#include "archive/container/member_reader.h"

#include "archive/ciphers/aes_cipher.h"
#include "archive/ciphers/traditional_cipher.h"
#include "checksum/checksum.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace quill::zip {
namespace {

using archive::AesField;
using archive::Passed;
using archive::StreamState;

void report(Content& content, ProblemKind kind, std::uint64_t at, std::string text = {}) {
    content.problems.push_back({kind, at, {}, std::move(text)});
}

/// Returns the field 9901 of `extra`; nullopt if it is missing or too short.
std::optional<AesField> aes_field(std::string_view extra) {
    constexpr std::size_t field_size = 7;
    const std::optional<std::string_view> field = extra_field(extra, extra_aes);
    if (!field || field->size() < field_size) return std::nullopt;
    return AesField{get16(*field, 0), static_cast<std::uint8_t>((*field)[4]), get16(*field, 5)};
}

bool has_ended(StreamState state) {
    return state == StreamState::ended || state == StreamState::complete;
}

bool refuse_password(Content& content, std::uint64_t at, std::string text) {
    report(content, ProblemKind::password, at, std::move(text));
    content.needs_password = true;
    return false;
}

/// Returns the possible forms of a data descriptor: with or without its signature, its sizes in 4 bytes or 8 (APPNOTE
/// 4.3.9).
std::array<std::string, 4> descriptors(std::uint32_t crc, std::uint64_t packed_size, std::uint64_t size) {
    std::string narrow, wide, signature;
    put32(narrow, crc);
    put32(narrow, packed_size);
    put32(narrow, size);
    put32(wide, crc);
    put64(wide, packed_size);
    put64(wide, size);
    put32(signature, descriptor_signature);
    return {signature + narrow, signature + wide, narrow, wide};
}

}  // namespace

/// A member's compressed bytes, and their cipher.
struct MemberReader::Source {
    Header local;
    std::uint64_t begin = 0;  // of all bytes after the header in the file
    std::uint64_t at = 0;     // of `data` in the file
    std::string_view data;
    bool cut = false;  // there are fewer bytes than stated
    std::optional<AesField> aes;
    std::unique_ptr<archive::Cipher> cipher;
};

/// Counts and checks the bytes on their way to the sink.
class MemberReader::Meter {
  public:
    explicit Meter(const Sink& sink) : sink_(sink) {}

    bool take(std::string_view bytes) {
        crc_ = quill::crc32(crc_, bytes);
        size_ += bytes.size();
        if (!bytes.empty() && !sink_(bytes)) stopped_ = true;
        return !stopped_;
    }

    std::uint64_t size() const { return size_; }
    std::uint32_t crc() const { return crc_; }
    bool stopped() const { return stopped_; }

  private:
    const Sink& sink_;
    std::uint64_t size_ = 0;
    std::uint32_t crc_ = 0;
    bool stopped_ = false;
};

MemberReader::MemberReader(const Archive& archive, std::string password)
    : archive_(archive), password_(std::move(password)) {}

Content MemberReader::read(const Member& member, const Sink& sink) {
    const std::optional<Member> own = as_in_own_header(member);
    if (!own || !checks_out(*own, sink)) return read_as(member, sink);
    const bool is_right = checks_out(member, sink);
    Content content = read_as(is_right ? member : *own, sink);
    if (!is_right) {
        report(content, ProblemKind::header_differs, member.header_offset,
               "its own header and the directory disagree, and its data agree with its own header");
    } else if (own->crc != member.crc || own->uncompressed_size != member.uncompressed_size) {
        report(content, ProblemKind::contents_differ, member.header_offset);
    }
    return content;
}

/// Returns the member with the numbers of its own header, if these differ and could be right.
std::optional<Member> MemberReader::as_in_own_header(const Member& member) const {
    if (member.recovered || member.elsewhere || member.is_encrypted()) return std::nullopt;
    const std::optional<Header> header = parse_local_header(archive_.bytes(), member.local_offset);
    if (!header || !states_sizes(*header) || header->size > member.room ||
        header->compressed_size > member.room - header->size) {
        return std::nullopt;
    }
    Member own = member;
    own.method = header->method;
    own.crc = header->crc;
    own.compressed_size = header->compressed_size;
    own.uncompressed_size = header->uncompressed_size;
    const bool differs = own.method != member.method || own.crc != member.crc ||
                         own.compressed_size != member.compressed_size ||
                         own.uncompressed_size != member.uncompressed_size;
    return differs ? std::optional(std::move(own)) : std::nullopt;
}

/// Reads the member without passing its bytes to `sink`, and returns true if it is verified.
bool MemberReader::checks_out(const Member& member, const Sink& sink) {
    return read_as(member, [&](std::string_view) { return sink({}); }).verdict == Verdict::verified;
}

Content MemberReader::read_as(const Member& member, const Sink& sink) {
    Content content;
    Source source;
    if (!locate(member, source, content) || !open_cipher(member, source, content)) return content;
    // An empty member is stored, whatever its method.
    const bool empty = member.sizes_known && member.uncompressed_size == 0 && source.data.empty();
    const std::uint16_t number = empty ? method_stored : member.content_method();
    const archive::Method* const method = archive::find_method(number);
    if (method == nullptr || method->make == nullptr) {
        report(content, ProblemKind::unsupported, source.at, "its method, " + method_name(number) + ", can't be read");
        return content;
    }
    Meter meter(sink);
    const Passed passed = decode(member, source, *method, meter);
    judge(member, source, passed, meter, content);
    return content;
}

/// Finds the member's data by its local header, and reports differences between the two headers.
bool MemberReader::locate(const Member& member, Source& source, Content& content) const {
    const std::string_view bytes = archive_.bytes();
    if (member.elsewhere) {
        report(content, ProblemKind::other_volume, 0);
        return false;
    }
    if ((member.flags & (strong_encryption_flag | masked_header_flag | patch_flag)) != 0) {
        report(content, ProblemKind::unsupported, member.local_offset, "it has strong encryption, which can't be read");
        return false;
    }
    std::uint64_t at = member.local_offset;
    std::optional<Header> local = parse_local_header(bytes, at);
    if (!local && archive_.directory() && archive_.directory()->shift != 0) {
        at -= static_cast<std::uint64_t>(archive_.directory()->shift);
        local = parse_local_header(bytes, at);
    }
    if (!local) {
        report(content, ProblemKind::no_local_header, member.local_offset);
        return false;
    }
    source.local = *local;
    source.begin = source.at = at + local->size;
    source.data = slice(bytes, source.at, member.compressed_size);
    // The size of a recovered member was replaced if it led to nothing.
    const std::uint64_t stated = member.recovered ? local->compressed_size : member.compressed_size;
    source.cut = member.sizes_known && source.data.size() < stated;
    if (local->name != member.raw_name) {
        report(content, ProblemKind::names_differ, at,
               "its own header calls it \"" + text::to_utf8(local->name) + "\", the directory calls it \"" +
                   std::string(member.name) + "\"");
    }
    const bool silent = !states_sizes(*local);
    const bool sizes_differ = local->compressed_size != member.compressed_size ||
                              local->uncompressed_size != member.uncompressed_size || local->crc != member.crc;
    if (!member.recovered && (local->method != member.method || (sizes_differ && !silent))) {
        report(content, ProblemKind::header_differs, at);
    }
    return true;
}

/// Reads the bytes before the encrypted bytes of a member.
bool MemberReader::open_cipher(const Member& member, Source& source, Content& content) const {
    if (!member.is_encrypted() && !member.is_aes()) return true;
    if (password_.empty()) return refuse_password(content, source.at, "it needs a password");
    if (member.is_aes()) return open_aes(member, source, content);
    if (member.method != method_aes) return open_traditional(member, source, content);
    report(content, ProblemKind::unsupported, source.at, "it is encrypted in an unknown way");
    return false;
}

bool MemberReader::open_traditional(const Member& member, Source& source, Content& content) const {
    constexpr std::size_t header_size = archive::TraditionalCipher::header_size;
    auto cipher = std::make_unique<archive::TraditionalCipher>(password_);
    const std::uint8_t check = cipher->read_header(source.data.substr(0, header_size));
    const bool by_crc = check == member.crc >> 24U;
    const bool crc_came_later = ((source.local.flags | member.flags) & descriptor_flag) != 0;
    const bool by_time = crc_came_later && check == (source.local.dos_time >> 8U & 0xFFU);
    if (source.data.size() < header_size || (!by_crc && !by_time)) {
        return refuse_password(content, source.at, "the password is wrong");
    }
    source.data.remove_prefix(header_size);
    source.at += header_size;
    source.cipher = std::move(cipher);
    return true;
}

/// Removes salt, check of the password and authentication code from the data. Data that are cut have no code.
bool MemberReader::open_aes(const Member& member, Source& source, Content& content) const {
    source.aes = aes_field(member.extra);
    const std::size_t head_size = source.aes ? source.aes->head_size() : 0;
    if (head_size == 0) {
        report(content, ProblemKind::unsupported, source.at, "it is encrypted in an unknown way");
        return false;
    }
    const bool has_code = member.sizes_known && !source.cut && source.data.size() >= head_size + archive::aes_code_size;
    if (source.data.size() < head_size) {
        report(content, ProblemKind::cut, source.at, "its encrypted data are too short");
        return false;
    }
    const std::string_view head = source.data.substr(0, head_size);
    const std::size_t size = source.data.size() - head_size - (has_code ? archive::aes_code_size : 0);
    const std::string_view code = source.data.substr(head_size + size);
    source.cipher = archive::make_aes_cipher(*source.aes, password_, head, code);
    if (!source.cipher) return refuse_password(content, source.at, "the password is wrong");
    source.data = source.data.substr(head_size, size);
    source.at += head_size;
    return true;
}

Passed MemberReader::decode(const Member& member, const Source& source, const archive::Method& method, Meter& meter) {
    if (method.number == method_deflated && member.sizes_known && !source.cipher) {
        if (const auto whole = inflater_.inflate(source.data, member.uncompressed_size)) {
            Passed passed{.state = StreamState::ended, .read = whole->read};
            passed.stopped = !meter.take(whole->content);
            return passed;
        }
    }
    archive::StreamInfo info{method.number, member.flags};
    if (member.sizes_known) info.size = member.uncompressed_size;
    const archive::DecompressorPtr decompressor = method.make(info);
    return chain_.run(source.data, source.cipher.get(), *decompressor,
                      info.size.value_or(std::numeric_limits<std::uint64_t>::max()),
                      [&](std::string_view bytes) { return meter.take(bytes); });
}

/// Compares the output with the stated values.
void MemberReader::judge(const Member& member, const Source& source, const Passed& passed, const Meter& meter,
                         Content& content) const {
    content.size = meter.size();
    content.sink_failed = passed.stopped;
    content.verdict = Verdict::damaged;
    if (passed.stopped) return;
    check_ends(member, source, passed, content);
    if (passed.state == StreamState::broken || passed.state == StreamState::too_large ||
        (passed.state == StreamState::running && !passed.too_long)) {
        if (meter.size() == 0) content.verdict = Verdict::refused;
        return;
    }
    if (!member.sizes_known) {
        content.verdict = judge_by_descriptor(source, passed, meter, content);
    } else if (check_numbers(member, source, passed, meter, content) && passed.authentic != false) {
        content.verdict = Verdict::verified;
    }
}

/// Compares size and CRC with the stated ones, and reports differences. AE-2 omits the CRC; one that is present is
/// checked anyway.
bool MemberReader::check_numbers(const Member& member, const Source& source, const Passed& passed, const Meter& meter,
                                 Content& content) const {
    if (passed.too_long || meter.size() != member.uncompressed_size) {
        const std::string size = std::to_string(meter.size());
        report(content, ProblemKind::wrong_size, source.at,
               passed.too_long ? "it has more than the " + size + " bytes that it states"
                               : "it has " + size + " bytes and states " + std::to_string(member.uncompressed_size));
        return false;
    }
    const bool crc_left_out = source.aes && source.aes->version == 2 && member.crc == 0;
    if (!crc_left_out && meter.crc() != member.crc) {
        report(content, ProblemKind::bad_crc, source.at, "its CRC is wrong");
        return false;
    }
    // The code authenticates only the encrypted bytes, not how to interpret them.
    const std::optional<AesField> own = aes_field(source.local.extra);
    if (crc_left_out && own && *own != *source.aes) {
        report(content, ProblemKind::cipher_differs, source.at);
        return false;
    }
    return true;
}

/// Reports problems at the end of the compressed data, or with their authentication code.
void MemberReader::check_ends(const Member& member, const Source& source, const Passed& passed,
                              Content& content) const {
    if (source.cut) report(content, ProblemKind::cut, source.at + source.data.size());
    const std::uint64_t at = source.at + passed.read;
    if (passed.state == StreamState::broken) {
        report(content, ProblemKind::bad_data, at);
    } else if (passed.state == StreamState::too_large) {
        report(content, ProblemKind::unsupported, at, "it needs more memory than is allowed");
    } else if (passed.state == StreamState::running && !passed.too_long && !source.cut) {
        report(content, ProblemKind::cut, at, "its compressed data end too early");
    } else if (has_ended(passed.state) && !passed.too_long && member.sizes_known && passed.read < source.data.size()) {
        report(content, ProblemKind::extra_data, at);
    }
    if (passed.authentic == false && member.sizes_known && !source.cut) {
        report(content, ProblemKind::bad_code, source.at + source.data.size());
    }
}

/// Compares the output with what follows a stream that ended by itself: its data descriptor, unless the file ends
/// before or within it, or the next header follows at once.
Verdict MemberReader::judge_by_descriptor(const Source& source, const Passed& passed, const Meter& meter,
                                          Content& content) const {
    if (passed.state != StreamState::ended || source.aes) {
        report(content, ProblemKind::cut, source.at, "nothing shows where it ends");
        return Verdict::damaged;
    }
    const std::uint64_t end = source.at + passed.read;
    const std::string_view rest = slice(archive_.bytes(), end, std::string_view::npos);
    Verdict verdict = Verdict::damaged;
    if (const std::uint32_t next = get32(rest, 0); next == local_signature || next == central_signature) {
        verdict = Verdict::whole;
    }
    for (const std::string& descriptor : descriptors(meter.crc(), end - source.begin, meter.size())) {
        if (rest.starts_with(descriptor)) return Verdict::verified;
        if (descriptor.starts_with(rest)) verdict = Verdict::whole;
    }
    if (verdict == Verdict::damaged) {
        report(content, ProblemKind::bad_descriptor, end);
    }
    return verdict;
}

}  // namespace quill::zip
