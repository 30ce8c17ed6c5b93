// The decoder with the words that it has in the program, beside the one with those of this machine.
#define KORB_UNPACK_WORD uint32_t
#define UnpackTokens NarrowUnpackTokens
#define UnpackBlock NarrowUnpackBlock
#define UnpackString NarrowUnpackString
#include "archive/UnpackBlock.cpp"
