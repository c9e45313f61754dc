#pragma once

/// Base of classes whose objects have an identity: they are never copy-constructed.
class NoCopy {
 public:
  NoCopy(NoCopy const&) = delete;
  NoCopy& operator=(NoCopy const&) = delete;

 protected:
  NoCopy() = default;
  ~NoCopy() = default;
};
