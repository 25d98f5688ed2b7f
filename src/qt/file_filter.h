#pragma once
// The common dialog's filter, "description|patterns|description|patterns" with patterns
// joined by ";", in Qt's form "description (patterns);;...", patterns joined by blanks.
#include <QString>
#include <string>

namespace vellumar::qt {

// "ADIF files (*.adi)|*.adi|All files (*.*)|*.*" gives "ADIF files (*.adi);;All files (*)".
// A pattern list already written in the description is replaced by the real one; "*.*", which
// means every file, becomes "*" (Qt's "*.*" would want a dot in the name).
QString QtFileFilter(const std::string& filter);

}  // namespace vellumar::qt
