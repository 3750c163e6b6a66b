#pragma once

namespace zav {

/// Installs the calls that lower units make into higher ones. Called once, before anything else.
void ZAV_install_hooks();

}  // namespace zav
