#pragma once
// ADIF interchange: the export of the log to ADIF files, the parsing of ADIF text into
// fields and records, and the import of those records into the log, with its report of the
// records refused. Nothing is here yet; this library is where that code goes.
