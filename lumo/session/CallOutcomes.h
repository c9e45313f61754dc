#pragma once

/// What a call came to.
class CallOutcomes {
 public:
  enum eCallOutcome : int {
    NotSet = 0,          ///< no call was made
    Success = 1,         ///< the response was read
    Fault = 2,           ///< a SOAP fault, with a status other than 200
    OtherStatus = 3,     ///< a status other than 200 without a fault, such as 404 or a redirect
    NoReply = 4,         ///< no complete reply arrived, or nothing could be sent
    NotUnderstood = 5,   ///< status 200, but not XML, no response in it, or a value that is none
    FaultInSuccess = 6,  ///< a SOAP fault with status 200
    /// The response was read but for values that nobody could build, because
    /// `kpxtkLumoServiceLayer::Initialize` has not run.
    NotInitialized = 7,
  };
};
