#pragma once
// The conversations with the sibling station programs, both ways: the encoding of the
// records their commands carry, the server topic through which they add QSOs and ask for
// progress, and the client links this program keeps to them (transceiver, entity lookup,
// spots, QSL routes) with their retry. Nothing is here yet; this library is where that code
// goes, seeing the transport only through platform/link.
