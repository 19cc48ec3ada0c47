// Stand-in used only by the Mac shell type-check: GNUstep's headers include
// <objc/blocks_runtime.h> for Block_copy and Block_release, which Debian ships
// as <Block.h> in libblocksruntime-dev.
#ifndef VANTRO_MACSHELL_OBJC_BLOCKS_RUNTIME_H
#define VANTRO_MACSHELL_OBJC_BLOCKS_RUNTIME_H
#include <Block.h>
#endif
