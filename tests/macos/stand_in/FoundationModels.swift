// A stand-in for the framework of this name, so that the shim can be type-checked and run without it. The
// declarations are those the vendor documents under developer.apple.com/documentation/foundationmodels; the behaviour
// is our own: they record their arguments, and answer or fail as a test's prompt demands.

import Foundation

// systemlanguagemodel
@available(macOS 26.0, *)
public final class SystemLanguageModel: Sendable {
    // systemlanguagemodel/default
    public static let `default` = SystemLanguageModel()

    // systemlanguagemodel/availability-swift.enum
    public enum Availability: Equatable, Sendable {
        // systemlanguagemodel/availability-swift.enum/unavailablereason
        public enum UnavailableReason: Equatable, Sendable {
            case deviceNotEligible
            case appleIntelligenceNotEnabled
            case modelNotReady
            // Not in the real framework, but it may gain more reasons.
            case unforeseen
        }
        case available
        case unavailable(UnavailableReason)
    }

    // systemlanguagemodel/availability-swift.property
    public var availability: Availability {
        switch ProcessInfo.processInfo.environment["STAND_IN_STATE"] {
        case "not eligible": return .unavailable(.deviceNotEligible)
        case "not enabled": return .unavailable(.appleIntelligenceNotEnabled)
        case "not ready": return .unavailable(.modelNotReady)
        case "unforeseen": return .unavailable(.unforeseen)
        default: return .available
        }
    }
}

// tool
@available(macOS 26.0, *)
public protocol Tool: Sendable {}

// prompt
@available(macOS 26.0, *)
public struct Prompt: Sendable {
    let text: String
    // prompt/init(_:)
    public init(_ content: String) { text = content }
}

// generable
@available(macOS 26.0, *)
public protocol Generable {}
@available(macOS 26.0, *)
extension Int: Generable {}
@available(macOS 26.0, *)
extension String: Generable {}

// generationguide
@available(macOS 26.0, *)
public struct GenerationGuide<Value> {
    let text: String
}
@available(macOS 26.0, *)
extension GenerationGuide where Value == Int {
    // generationguide/range(_:)
    public static func range(_ range: ClosedRange<Int>) -> GenerationGuide<Int> {
        GenerationGuide(text: "\(range.lowerBound)...\(range.upperBound)")
    }
}

// dynamicgenerationschema
@available(macOS 26.0, *)
public struct DynamicGenerationSchema: Sendable {
    let text: String

    // dynamicgenerationschema/property
    public struct Property {
        let text: String
        // dynamicgenerationschema/property/init(name:description:schema:isoptional:)
        public init(name: String, description: String? = nil, schema: DynamicGenerationSchema, isOptional: Bool = false) {
            text = "\(name)(\(description ?? "-"))\(isOptional ? "?" : ""): \(schema.text)"
        }
    }

    // dynamicgenerationschema/init(name:description:properties:)
    public init(name: String, description: String? = nil, properties: [Property]) {
        text = "\(name) {\(properties.map(\.text).joined(separator: "; "))}"
    }
    // dynamicgenerationschema/init(name:description:anyof:)
    public init(name: String, description: String? = nil, anyOf choices: [DynamicGenerationSchema]) {
        text = "\(name) one of schemas \(choices.map(\.text))"
    }
    public init(name: String, description: String? = nil, anyOf choices: [String]) {
        text = "\(name) of \(choices.joined(separator: "|"))"
    }
    // dynamicgenerationschema/init(type:guides:)
    public init<Value>(type: Value.Type, guides: [GenerationGuide<Value>] = []) where Value: Generable {
        text = "\(type)" + guides.map { " " + $0.text }.joined()
    }
}

// generationschema
@available(macOS 26.0, *)
public struct GenerationSchema: Sendable {
    let text: String
    // generationschema/init(root:dependencies:)
    public init(root: DynamicGenerationSchema, dependencies: [DynamicGenerationSchema]) throws {
        text = root.text
    }
}

// generationoptions
@available(macOS 26.0, *)
public struct GenerationOptions: Sendable {
    public struct SamplingMode: Sendable {}
    public var temperature: Double?
    // generationoptions/init(samplingmode:temperature:maximumresponsetokens:)
    public init(samplingMode: SamplingMode? = nil, temperature: Double? = nil, maximumResponseTokens: Int? = nil) {
        self.temperature = temperature
    }
}

// generatedcontent
@available(macOS 26.0, *)
public struct GeneratedContent: Sendable {
    // generatedcontent/jsonstring
    public let jsonString: String
}

// languagemodelsession
@available(macOS 26.0, *)
public final class LanguageModelSession: @unchecked Sendable {
    private let instructions: String?

    // languagemodelsession/init(model:tools:instructions:)
    public init(model: SystemLanguageModel = .default, tools: [any Tool] = [], instructions: String? = nil) {
        self.instructions = instructions
    }

    // languagemodelsession/response
    public struct Response<Content> {
        public let content: Content
    }

    // languagemodelsession/generationerror
    public enum GenerationError: Error, LocalizedError {
        // languagemodelsession/generationerror/context
        public struct Context: Sendable {
            public let debugDescription: String
        }
        // languagemodelsession/generationerror/refusal
        public struct Refusal: Sendable {}

        case exceededContextWindowSize(Context)
        case assetsUnavailable(Context)
        case guardrailViolation(Context)
        case unsupportedGuide(Context)
        case unsupportedLanguageOrLocale(Context)
        case decodingFailure(Context)
        case rateLimited(Context)
        case concurrentRequests(Context)
        case refusal(Refusal, Context)

        public var errorDescription: String? { "session: \(self)".components(separatedBy: "(").first }
    }

    // languagemodelsession/respond(to:schema:includeschemainprompt:options:)
    @discardableResult
    public func respond(
        to prompt: Prompt, schema: GenerationSchema, includeSchemaInPrompt: Bool = true,
        options: GenerationOptions = GenerationOptions()
    ) async throws -> Response<GeneratedContent> {
        if let error = failure(demanded: prompt.text) {
            throw error
        }
        if prompt.text == "hears" {
            // Never ends by itself either, but reports when it is cancelled.
            do {
                try await Task.sleep(nanoseconds: 3_600_000_000_000)
            } catch {
                let heard = ProcessInfo.processInfo.environment["STAND_IN_HEARD"].flatMap(Int32.init)
                _ = write(heard ?? -1, "x", 1)
                throw error
            }
        }
        if prompt.text == "deaf" {
            // Never ends by itself and ignores cancellation.
            await withUnsafeContinuation { (_: UnsafeContinuation<Void, Never>) in }
        }
        let words = [
            instructions ?? "-", prompt.text, schema.text, "\(includeSchemaInPrompt)", "\(options.temperature ?? -1)",
        ]
        let json = try JSONEncoder().encode(words)
        return Response(content: GeneratedContent(jsonString: String(decoding: json, as: UTF8.self)))
    }
}

// languagemodelerror
@available(macOS 27.0, *)
public enum LanguageModelError: Error, LocalizedError {
    public struct ContextSizeExceeded: Sendable {}
    public struct RateLimited: Sendable {}
    public struct Refusal: Sendable {}
    public struct GuardrailViolation: Sendable {}
    public struct UnsupportedLanguageOrLocale: Sendable {}
    public struct UnsupportedCapability: Sendable {}
    public struct Timeout: Sendable {}

    case contextSizeExceeded(ContextSizeExceeded)
    case rateLimited(RateLimited)
    case refusal(Refusal)
    case guardrailViolation(GuardrailViolation)
    case unsupportedLanguageOrLocale(UnsupportedLanguageOrLocale)
    case unsupportedCapability(UnsupportedCapability)
    case timeout(Timeout)

    public var errorDescription: String? { "model: \(self)".components(separatedBy: "(").first }
}

private struct Unforeseen: Error, LocalizedError {
    var errorDescription: String? { "unforeseen" }
}

@available(macOS 27.0, *)
private let modelErrors: [String: LanguageModelError] = [
    "contextSizeExceeded": .contextSizeExceeded(.init()),
    "rateLimited": .rateLimited(.init()),
    "refusal": .refusal(.init()),
    "guardrailViolation": .guardrailViolation(.init()),
    "unsupportedLanguageOrLocale": .unsupportedLanguageOrLocale(.init()),
    "unsupportedCapability": .unsupportedCapability(.init()),
    "timeout": .timeout(.init()),
]

@available(macOS 26.0, *)
private func sessionError(_ name: String) -> LanguageModelSession.GenerationError? {
    let context = LanguageModelSession.GenerationError.Context(debugDescription: "")
    switch name {
    case "exceededContextWindowSize": return .exceededContextWindowSize(context)
    case "assetsUnavailable": return .assetsUnavailable(context)
    case "guardrailViolation": return .guardrailViolation(context)
    case "unsupportedGuide": return .unsupportedGuide(context)
    case "unsupportedLanguageOrLocale": return .unsupportedLanguageOrLocale(context)
    case "decodingFailure": return .decodingFailure(context)
    case "rateLimited": return .rateLimited(context)
    case "concurrentRequests": return .concurrentRequests(context)
    case "refusal": return .refusal(.init(), context)
    default: return nil
    }
}

/// The prompts "session:…" and "model:…" name an error of either family; "unforeseen" one of neither.
@available(macOS 26.0, *)
private func failure(demanded prompt: String) -> (any Error)? {
    if prompt == "unforeseen" {
        return Unforeseen()
    }
    let words = prompt.split(separator: ":", maxSplits: 1).map(String.init)
    if words.count == 2, words[0] == "session" {
        return sessionError(words[1])
    }
    if #available(macOS 27.0, *), words.count == 2, words[0] == "model" {
        return modelErrors[words[1]]
    }
    return nil
}
