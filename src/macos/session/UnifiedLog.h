#pragma once

namespace nimbarrow::unifiedlog {

/// From now on what the program and its libraries log goes to the system's log. Called once.
void start();

} // namespace nimbarrow::unifiedlog
