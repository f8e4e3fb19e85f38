#pragma once

namespace tallyfox {

/// Finds out whether this session has a bus, and whether it answers; when not, the process and its children do without
/// one from now on. To be called before the application object is made: Qt itself goes to the bus for screen readers,
/// and would wait for a silent one for ever. Takes a moment, and 2 seconds at most.
bool chooseSessionBus();

} // namespace tallyfox
