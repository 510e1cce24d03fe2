#include <reference/glue/Classes.hpp>

namespace reference::glue {

void registerClasses() {
    // Registration is idempotent in the host: defining a name again returns the class already there.
    registerEnumerationClasses();
    registerRecordClasses();
}

}  // namespace reference::glue
