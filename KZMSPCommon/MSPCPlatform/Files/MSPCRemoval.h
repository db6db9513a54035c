#pragma once

// Removes a file, a link (not its target) or a folder with all its content; false when something is left. `name` counts
// from an open folder. Allocates no memory, so that signal handlers may call it.
bool MSPCRemoveItem(int folder, const char* name) noexcept;
// The same with a path.
bool MSPCRemoveItem(const char* path) noexcept;

// Whether nothing is in the way of removing an item with all its content, as far as that can be told before: folders
// that may not be changed, or on which another file system is mounted. What is gone, or goes meanwhile, is in nobody's
// way. The rights on `folder` itself are not asked.
[[nodiscard]] bool MSPCIsRemovable(int folder, const char* name);
