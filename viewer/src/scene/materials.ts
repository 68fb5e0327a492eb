// How the surface, the cut and its hatching are coloured.

import {
    DataTexture,
    DoubleSide,
    GLSL3,
    InvertStencilOp,
    LinearFilter,
    NotEqualStencilFunc,
    RGBAFormat,
    ShaderMaterial,
    Vector3,
    Vector4,
    ZeroStencilOp,
} from "three";

import { PALETTE_SIZE } from "./palettes";

export const SHOW = { change: 0, stone: 1 } as const;

/** Shared by all materials: what is set once holds for before and after. */
export function sharedUniforms() {
    return {
        palette: { value: paletteTexture(new Uint8Array(3 * PALETTE_SIZE)) },
        low: { value: 0 },
        high: { value: 1 },
        sign: { value: 1 },
        show: { value: 0 as number },
        contourStep: { value: 0 },
        light: { value: new Vector3(0, 0, 1) },
        strength: { value: 0.6 },
        room: { value: 0.5 },
        relief: { value: 0 },
        cut: { value: new Vector4(0, 0, 0, 0) },
        hatch: { value: 7 },
    };
}

export type SharedUniforms = ReturnType<typeof sharedUniforms>;

export function paletteTexture(colours: Uint8Array): DataTexture {
    const data = new Uint8Array(4 * PALETTE_SIZE);
    for (let i = 0; i < PALETTE_SIZE; i++) {
        data.set(colours.subarray(3 * i, 3 * i + 3), 4 * i);
        data[4 * i + 3] = 255;
    }
    const texture = new DataTexture(data, PALETTE_SIZE, 1, RGBAFormat);
    texture.magFilter = LinearFilter;
    texture.minFilter = LinearFilter;
    texture.needsUpdate = true;
    return texture;
}

const LIGHTING = /* glsl */ `
    uniform vec3 light;
    uniform float strength;
    uniform float room;

    vec3 linearOf(vec3 c) { return mix(c / 12.92, pow((c + 0.055) / 1.055, vec3(2.4)), step(0.04045, c)); }
    vec3 gammaOf(vec3 c) { return mix(12.92 * c, 1.055 * pow(c, vec3(1.0 / 2.4)) - 0.055, step(0.0031308, c)); }

    /** n towards the eye's side, in the picture's axes. */
    float brightness(vec3 n) {
        float ambient = 0.46 + 0.30 * n.z + 0.24 * n.y;
        float rake = max(dot(n, light), 0.0);
        return 1.5 * room * ambient + 1.75 * strength * rake;
    }
`;

const SURFACE_VERTEX = /* glsl */ `
    in vec4 surround;
    in float change;
    out vec3 vNormal;
    out vec3 vSurround;
    out vec3 vPlace;
    out float vChange;

    void main() {
        vNormal = mat3(viewMatrix) * normal;
        vSurround = mat3(viewMatrix) * surround.xyz;
        vPlace = position;
        vChange = change;
        gl_Position = projectionMatrix * viewMatrix * vec4(position, 1.0);
    }
`;

const SURFACE_FRAGMENT = /* glsl */ `
    in vec3 vNormal;
    in vec3 vSurround;
    in vec3 vPlace;
    in float vChange;
    out vec4 colour;

    uniform sampler2D palette;
    uniform float low;
    uniform float high;
    uniform float sign;
    uniform int show;
    uniform float contourStep;
    uniform float relief;
    uniform vec4 cut;
    ${LIGHTING}

    float contour(float value) {
        float at = value / contourStep;
        float width = max(fwidth(at), 1e-6);
        float line = 1.0 - smoothstep(0.6, 1.5, abs(fract(at - 0.5) - 0.5) / width);
        // Where lines would run together there are none, nor around what has not moved.
        return abs(at) < 0.5 ? 0.0 : line * (1.0 - smoothstep(0.3, 0.6, width));
    }

    vec3 stoneColour() {
        if (show == 1) {
            return linearOf(vec3(0.80, 0.755, 0.675));
        }
        float shown = sign * vChange;
        float share = clamp((shown - low) / (high - low), 0.0, 1.0);
        vec3 c = linearOf(texture(palette, vec2((share * ${String(PALETTE_SIZE - 1)}.0 + 0.5) / ${String(PALETTE_SIZE)}.0, 0.5)).rgb);
        return contourStep > 0.0 ? mix(c, c * 0.12, 0.75 * contour(shown)) : c;
    }

    void main() {
        if (dot(cut.xyz, vPlace) > cut.w) {
            discard;
        }
        vec3 n = normalize(vNormal);
        vec3 s = normalize(vSurround);
        n = normalize(n + relief * (n - s));
        vec3 base = stoneColour();
        if (!gl_FrontFacing) {
            n = -n;
            base = mix(base, vec3(0.18, 0.17, 0.17), 0.7);
        }
        float b = brightness(n);
        // Colours stand for numbers: shading must not take them far away from the legend's.
        b = show == 0 ? mix(1.0, b, 0.62) : b;
        vec3 lit = base * b;
        lit = mix(lit, vec3(1.0), smoothstep(0.9, 2.2, b) * 0.25);
        colour = vec4(gammaOf(clamp(lit, 0.0, 1.0)), 1.0);
    }
`;

export function surfaceMaterial(shared: SharedUniforms): ShaderMaterial {
    return new ShaderMaterial({
        glslVersion: GLSL3,
        uniforms: shared,
        vertexShader: SURFACE_VERTEX,
        fragmentShader: SURFACE_FRAGMENT,
        side: DoubleSide,
    });
}

const PLAIN_VERTEX = /* glsl */ `
    void main() {
        gl_Position = projectionMatrix * viewMatrix * vec4(position, 1.0);
    }
`;

/** Draws nothing, but turns the stencil over once for every line of a fan: inside of the outline it stays odd. */
export function insideMaterial(): ShaderMaterial {
    return new ShaderMaterial({
        glslVersion: GLSL3,
        vertexShader: PLAIN_VERTEX,
        fragmentShader: "out vec4 colour; void main() { colour = vec4(0.0); }",
        side: DoubleSide,
        colorWrite: false,
        depthWrite: false,
        depthTest: false,
        stencilWrite: true,
        stencilZPass: InvertStencilOp,
        stencilWriteMask: 1,
    });
}

/** Hatches where the stencil is odd. */
export function hatchMaterial(shared: SharedUniforms): ShaderMaterial {
    return new ShaderMaterial({
        glslVersion: GLSL3,
        uniforms: shared,
        vertexShader: PLAIN_VERTEX,
        fragmentShader: /* glsl */ `
            out vec4 colour;
            uniform float hatch;
            void main() {
                float at = fract((gl_FragCoord.x - gl_FragCoord.y) / (1.41421 * hatch));
                float line = 1.0 - smoothstep(0.10, 0.22, abs(at - 0.5));
                colour = vec4(mix(vec3(0.80, 0.79, 0.76), vec3(0.47, 0.45, 0.43), line * 0.75), 1.0);
            }
        `,
        side: DoubleSide,
        stencilWrite: true,
        stencilFunc: NotEqualStencilFunc,
        stencilRef: 0,
        stencilFuncMask: 1,
        stencilZPass: ZeroStencilOp,
    });
}
