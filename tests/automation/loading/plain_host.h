// A host in plain C: the components that the server needs to make an object and to refuse a bill
// that does not exist, as class objects of this process.
#pragma once

// Registers the components for the calling thread's apartment, and takes them back. The ProgIDs
// must be registered. Return 0 on failure.
int RegisterPlainHost(void);
void RevokePlainHost(void);

// Objects of the host that somebody still holds, over all threads.
long LivingHostObjects(void);
// How often a component was made by its ProgID since the program began, over all threads.
long GlobalsMade(void);
long LoadersMade(void);
