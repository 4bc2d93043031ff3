#include <maya/MDagPathArray.h>
#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MObjectArray.h>
#include <maya/MPlugArray.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MStringArray.h>

#include "api/array.h"

// The lists differ in their items only, so the members of all of them come from one text.
#define TORVEL_DEFINE_LIST(List, Item, Given)                                            \
    List::List() {                                                                       \
        torvel::api::Array<List, Item>::start(*this);                                    \
    }                                                                                    \
    List::List(const List& other) : List(other.fData, other.fLength) {}                  \
    List::List(const Item* source, unsigned int count) : List() {                        \
        torvel::api::Array<List, Item>::assign(*this, source, source ? count : 0);       \
    }                                                                                    \
    List::List(unsigned int size, Given value) : List() {                                \
        torvel::api::Array<List, Item>::fill(*this, size, value);                        \
    }                                                                                    \
    List::~List() {                                                                      \
        delete[] fData;                                                                  \
    }                                                                                    \
    List& List::operator=(const List& other) {                                           \
        copy(other);                                                                     \
        return *this;                                                                    \
    }                                                                                    \
    const Item& List::operator[](unsigned int index) const {                             \
        return fData[index];                                                             \
    }                                                                                    \
    Item& List::operator[](unsigned int index) {                                         \
        return fData[index];                                                             \
    }                                                                                    \
    unsigned int List::length() const {                                                  \
        return fLength;                                                                  \
    }                                                                                    \
    MStatus List::setLength(unsigned int length) {                                       \
        return torvel::api::Array<List, Item>::setLength(*this, length);                 \
    }                                                                                    \
    MStatus List::append(Given value) {                                                  \
        return torvel::api::Array<List, Item>::append(*this, value);                     \
    }                                                                                    \
    MStatus List::insert(Given value, unsigned int index) {                              \
        return torvel::api::Array<List, Item>::insert(*this, value, index);              \
    }                                                                                    \
    MStatus List::remove(unsigned int index) {                                           \
        return torvel::api::Array<List, Item>::remove(*this, index);                     \
    }                                                                                    \
    MStatus List::clear() {                                                              \
        fLength = 0;                                                                     \
        return MStatus::kSuccess;                                                        \
    }                                                                                    \
    MStatus List::set(Given value, unsigned int index) {                                 \
        return torvel::api::Array<List, Item>::set(*this, value, index);                 \
    }                                                                                    \
    MStatus List::copy(const List& source) {                                             \
        if (&source != this)                                                             \
            torvel::api::Array<List, Item>::assign(*this, source.fData, source.fLength); \
        return MStatus::kSuccess;                                                        \
    }                                                                                    \
    Item* List::begin() {                                                                \
        return fData;                                                                    \
    }                                                                                    \
    Item* List::end() {                                                                  \
        return fData + fLength;                                                          \
    }                                                                                    \
    const Item* List::begin() const {                                                    \
        return fData;                                                                    \
    }                                                                                    \
    const Item* List::end() const {                                                      \
        return fData + fLength;                                                          \
    }                                                                                    \
    const Item* List::cbegin() const {                                                   \
        return fData;                                                                    \
    }                                                                                    \
    const Item* List::cend() const {                                                     \
        return fData + fLength;                                                          \
    }

MAYA_API_NAMESPACE_OPEN

TORVEL_DEFINE_LIST(MStringArray, MString, const MString&)
TORVEL_DEFINE_LIST(MDoubleArray, double, double)
TORVEL_DEFINE_LIST(MIntArray, int, int)
TORVEL_DEFINE_LIST(MPointArray, MPoint, const MPoint&)
TORVEL_DEFINE_LIST(MObjectArray, MObject, const MObject&)
TORVEL_DEFINE_LIST(MDagPathArray, MDagPath, const MDagPath&)
TORVEL_DEFINE_LIST(MPlugArray, MPlug, const MPlug&)

MStatus MPointArray::append(double x, double y, double z, double w) {
    return append(MPoint(x, y, z, w));
}

MAYA_API_NAMESPACE_CLOSE
