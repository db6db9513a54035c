#pragma once

// Removes what dead processes of this user left hidden in an open folder: their locks, and the hidden folders that
// these note. What a living process makes stays, as does what no lock notes. Nothing happens in a folder that may not
// be listed, or on a file system of the network, where it cannot be told who lives.
void MSPCRemoveLeftovers(int folder);
