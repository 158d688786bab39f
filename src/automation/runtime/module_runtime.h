// The compiler's runtime inside a module that hosts load and unload, again and again.
//
// mingw-w64's own emulation of thread-local storage and its threads library never give back what
// they take when a module is unloaded: a thread-local slot, handles and memory, each time. The
// module brings its own emulation, on one slot that it frees (thread_storage.cpp), and the few
// functions of the threads library that the C++ runtime calls, on locks that own nothing
// (runtime_locks.cpp). A function that is missing there fails the link: the threads library would
// then be linked beside it and define the others twice.
#pragma once

namespace tavcc::automation {

// Call from DllMain when a thread ends: frees its thread-local variables. None of them may have a
// destructor; what a variable points at is its owner's to free.
void FreeThreadStorage();

// Call from DllMain when the module is unloaded; `process_ends` when the whole process ends, which
// takes everything with it. The module's last destructor then frees what is left: all threads'
// variables, their slot, and the memory that the runtime keeps for exceptions when there is none.
void ModuleEnds(bool process_ends);

}  // namespace tavcc::automation
