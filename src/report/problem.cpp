#include "report/problem.h"

namespace quill::report {

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

}  // namespace quill::report
