#pragma once

#include "shell/session.h"

/// The first two panels of the create wizard: what to create, and of which kind.
namespace quill::shell {

/// Shows the first panel.
void open_create_wizard(Context& context);

/// Fills in the actions of the two panels and of the wizard's directory controls.
void connect_create_panels(Context& context);

}  // namespace quill::shell
