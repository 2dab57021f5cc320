// A host's own header: the library is not to take it for one of its own.
#error "the library's headers find the host's frame/text.h"
