/// Signals that end the tool: Ctrl-C, a terminal that is closed, a limit that is reached.
#pragma once

namespace pxk::tool {

/// From now on SIGINT, SIGTERM, SIGHUP and SIGXFSZ remove temporary files and the progress bar before they end the
/// process as they would without this. A signal that is ignored, as under nohup, stays so.
void leaveNothingWhenInterrupted();

}  // namespace pxk::tool
