// What the views of a host's object share: the object.
#pragma once

#include <utility>

#include "com/HostObject.h"
#include "com/LateBoundObject.h"

namespace kpTables::com {

class HostMembers : public HostReference {
public:
    explicit HostMembers(LateBoundObject object) noexcept : object_(std::move(object)) {}
    IDispatch* Dispatch() const noexcept override { return object_.Dispatch(); }

protected:
    const LateBoundObject& Members() const noexcept { return object_; }

private:
    LateBoundObject object_;
};

}  // namespace kpTables::com
