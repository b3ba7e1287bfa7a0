// The C interface to the system's language model, whose framework is Swift only. Does no more than
// system_model.cpp needs; see language_shim.h.

import Foundation
import FoundationModels
import UlvakLanguageShim

/// A started request. Settled exactly once: by its answer, its error or its cancellation, whichever comes
/// first.
private final class Started: @unchecked Sendable {
    private let lock = NSLock()
    private var isSettled = false  // guarded by the lock
    private let context: UnsafeMutableRawPointer?
    private let done: UlvakModelDone
    var task: Task<Void, Never>?  // set before anybody else knows of this object

    init(context: UnsafeMutableRawPointer?, done: @escaping UlvakModelDone) {
        self.context = context
        self.done = done
    }

    func settle(_ outcome: Int32, _ text: String) {
        lock.lock()
        let isFirst = !isSettled
        isSettled = true
        lock.unlock()
        if isFirst {
            text.withCString { done(context, outcome, $0) }
        }
    }

    func cancel() {
        task?.cancel()
        settle(code(ulvakModelOtherError), "İstek durduruldu.")
    }
}

private func code(_ outcome: UlvakModelOutcome) -> Int32 {
    Int32(outcome.rawValue)
}

private func text(_ bytes: UnsafePointer<CChar>?) -> String {
    bytes.map { String(cString: $0) } ?? ""
}

/// A copy of the C request structures, which are gone by the time the request runs.
private struct Request: Sendable {
    struct Property: Sendable {
        let name: String
        let description: String?
        let kind: Int32
        let choices: [String]
        let least: Int64
        let most: Int64

        init(_ row: UlvakModelProperty) {
            name = text(row.name)
            description = row.description.map { String(cString: $0) }
            kind = row.kind
            choices = (0..<Int(row.choiceCount)).map { text(row.choices[$0]) }
            least = row.least
            most = row.most
        }
    }

    let instructions: String
    let prompt: String
    let answerName: String
    let properties: [Property]
    let temperature: Double

    init(_ request: UlvakModelRequest) {
        instructions = text(request.instructions)
        prompt = text(request.prompt)
        answerName = text(request.answerName)
        properties = (0..<Int(request.propertyCount)).map { Property(request.properties[$0]) }
        temperature = request.temperature
    }
}

@available(macOS 26.0, *)
extension Request.Property {
    var schema: DynamicGenerationSchema {
        switch kind {
        case Int32(ulvakModelChoice.rawValue):
            return DynamicGenerationSchema(name: name + "Choice", anyOf: choices)
        case Int32(ulvakModelInteger.rawValue):
            return DynamicGenerationSchema(type: Int.self, guides: [.range(Int(least)...Int(most))])
        default:
            return DynamicGenerationSchema(type: String.self)
        }
    }
}

@available(macOS 26.0, *)
extension Request {
    func schema() throws -> GenerationSchema {
        let rows = properties.map {
            DynamicGenerationSchema.Property(name: $0.name, description: $0.description, schema: $0.schema)
        }
        return try GenerationSchema(root: DynamicGenerationSchema(name: answerName, properties: rows), dependencies: [])
    }

    /// In its own session: nothing is kept between requests.
    func answer() async throws -> String {
        let session = LanguageModelSession(model: SystemLanguageModel.default, tools: [], instructions: instructions)
        let response = try await session.respond(
            to: Prompt(prompt), schema: schema(), includeSchemaInPrompt: true,
            options: GenerationOptions(temperature: temperature))
        return response.content.jsonString
    }
}

@available(macOS 26.0, *)
private func outcome(of error: LanguageModelSession.GenerationError) -> UlvakModelOutcome {
    switch error {
    case .guardrailViolation:
        return ulvakModelGuardrailViolation
    case .refusal:
        return ulvakModelRefusal
    case .unsupportedLanguageOrLocale:
        return ulvakModelUnsupportedLanguage
    case .exceededContextWindowSize, .assetsUnavailable, .unsupportedGuide, .decodingFailure, .rateLimited,
        .concurrentRequests:
        return ulvakModelOtherError
    @unknown default:
        return ulvakModelOtherError
    }
}

// The second family of errors was added in a later system; older SDKs lack it.
#if ULVAK_LANGUAGE_MODEL_ERROR
@available(macOS 27.0, *)
private func outcome(of error: LanguageModelError) -> UlvakModelOutcome {
    switch error {
    case .guardrailViolation:
        return ulvakModelGuardrailViolation
    case .refusal:
        return ulvakModelRefusal
    case .unsupportedLanguageOrLocale:
        return ulvakModelUnsupportedLanguage
    case .contextSizeExceeded, .rateLimited, .unsupportedCapability, .timeout:
        return ulvakModelOtherError
    @unknown default:
        return ulvakModelOtherError
    }
}
#endif

@available(macOS 26.0, *)
private func outcomeCode(of error: any Error) -> Int32 {
    if let error = error as? LanguageModelSession.GenerationError {
        return code(outcome(of: error)) | code(ulvakModelSessionFamily)
    }
    #if ULVAK_LANGUAGE_MODEL_ERROR
    if #available(macOS 27.0, *), let error = error as? LanguageModelError {
        return code(outcome(of: error))
    }
    #endif
    return code(ulvakModelOtherError)
}

@available(macOS 26.0, *)
private func state() -> UlvakModelState {
    switch SystemLanguageModel.default.availability {
    case .available:
        return ulvakModelAvailable
    case .unavailable(.deviceNotEligible):
        return ulvakModelDeviceNotEligible
    case .unavailable(.appleIntelligenceNotEnabled):
        return ulvakModelNotEnabled
    case .unavailable(.modelNotReady):
        return ulvakModelNotReady
    case .unavailable:
        return ulvakModelUnavailable
    @unknown default:
        return ulvakModelUnavailable
    }
}

@_cdecl("ulvakModelState")
public func modelState() -> Int32 {
    guard #available(macOS 26.0, *) else {
        return Int32(ulvakModelUnavailable.rawValue)
    }
    return Int32(state().rawValue)
}

@_cdecl("ulvakModelStart")
public func modelStart(
    _ request: UnsafePointer<UlvakModelRequest>, _ context: UnsafeMutableRawPointer?, _ done: @escaping UlvakModelDone
) -> UnsafeMutableRawPointer {
    let started = Started(context: context, done: done)
    let copy = Request(request.pointee)
    started.task = Task {
        guard #available(macOS 26.0, *) else {
            started.settle(code(ulvakModelOtherError), "")
            return
        }
        do {
            started.settle(code(ulvakModelAnswered), try await copy.answer())
        } catch {
            started.settle(outcomeCode(of: error), error.localizedDescription)
        }
    }
    return Unmanaged.passRetained(started).toOpaque()
}

@_cdecl("ulvakModelCancel")
public func modelCancel(_ started: UnsafeMutableRawPointer) {
    Unmanaged<Started>.fromOpaque(started).takeUnretainedValue().cancel()
}

@_cdecl("ulvakModelRelease")
public func modelRelease(_ started: UnsafeMutableRawPointer) {
    Unmanaged<Started>.fromOpaque(started).release()
}
