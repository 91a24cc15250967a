#include "codec/attachment.h"

#include <utility>

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

void Outcome::add(Problem problem) {
    count(proof, problem);
    verdict = codec::verdict(proof);
    problems.push_back(std::move(problem));
}

}  // namespace quill::codec
