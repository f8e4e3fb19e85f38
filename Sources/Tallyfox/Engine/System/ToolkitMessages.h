#pragma once

namespace tallyfox {

/// From now on the toolkit's own remarks are not printed: they would break the rule of one line per diagnostic, and
/// nobody can act on them. Only what ends the program is told.
void silenceToolkitMessages();

} // namespace tallyfox
