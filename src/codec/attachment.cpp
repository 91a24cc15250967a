#include "codec/attachment.h"

namespace quill::codec {

std::string_view name_of(Format format) {
    switch (format) {
        case Format::base64:
            return "MIME";
        case Format::uu:
            return "UUE";
        case Format::xx:
            return "XXE";
        case Format::binhex:
            return "BinHex";
        case Format::yenc:
            return "yEnc";
        case Format::quoted_printable:
            return "quoted-printable";
        case Format::identity:
            break;
    }
    return "plain";
}

std::string_view name_of(Verdict verdict) {
    switch (verdict) {
        case Verdict::verified:
            return "verified";
        case Verdict::whole:
            return "whole";
        case Verdict::damaged:
            return "damaged";
        case Verdict::incomplete:
            break;
    }
    return "incomplete";
}

}  // namespace quill::codec
