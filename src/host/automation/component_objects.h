// The host's components as automation objects, over the Host that serves the calling thread.
#pragma once

#include <memory>

#include "automation/border/platform.h"
#include "foundation/host.h"

namespace tavcc::host_automation {

// The host that components created on this thread belong to; null for none, then creating one is
// error 429. The caller keeps it alive.
void SetThreadHost(Host* host);
Host& ThreadHost();

// Makes the dictionary the one that the process publishes, as the property of the desktop window
// that carries the process id; null publishes nothing. The property holds a bare pointer, so the
// published object stays alive until the next call.
void Publish(const DictionaryPtr& dictionary);

// One object each, with one reference. Errors: 429 where the host lacks the component. The global
// object belongs to whichever host serves the thread when it is called.
IDispatch* NewGlobal();
IDispatch* NewApplicationConnectionObject();
IDispatch* NewClassInfoObject();
IDispatch* NewSystemProfileObject();
IDispatch* NewErrorCheckerObject();
IDispatch* NewDataServiceObject();
IDispatch* NewGLDataObject();
IDispatch* NewResourceLoaderObject();
IDispatch* NewDictionaryObject();
IDispatch* NewVectorObject();
IDispatch* NewFunctionsObject();

}  // namespace tavcc::host_automation
