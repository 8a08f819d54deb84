#pragma once

namespace tallyvox {

/// Registers the renderer's cases: every shape, mode and size of buffer, beside the literal
/// reference and beside what memory allows.
void registerRendering();

/// Registers the loading of all 128 recordings, beside the literal reference and beside reading
/// their bytes. They come from the voice root.
void registerLoading();

/// Prints how the longest of many calls compares with the machine's own interruptions.
void printJitter();

/// Prints what a call takes after something else had the caches for itself.
void printCold();

}
