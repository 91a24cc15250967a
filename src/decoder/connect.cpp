#include "decoder/connect.h"

#include "decoder/results_panel.h"
#include "decoder/triage.h"

#include <string>

namespace quill::decoder {

void connect_decoder(shell::Context& context) {
    context.routes.decode = [&context](std::string& path) { undec(context, path); };
    connect_results_panel(context);
}

}  // namespace quill::decoder
