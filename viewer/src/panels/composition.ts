// A picture to keep: the stone with legend, scale, marks and caption on one canvas.

import type { Context } from "../context";
import { epochOf, epochPhrase, figureOf, timePhrase } from "../data/run";
import { text } from "../text/english";
import { coloursOf, drawLegend, inUnit, type Legend, LEGEND_HEIGHT, LEGEND_WIDTH } from "./legend";
import type { Points } from "./points";
import { drawScaleBar } from "./scale_bar";
import { enlargementText } from "./surface";

export interface PictureSize {
    width: number;
    height: number;
}

const CAPTION = 40;
const MARGIN = 16;

/** Letters are as large as on a picture this high. */
const DESIGN_HEIGHT = 760;

export function composePicture(
    context: Context,
    legend: Legend,
    points: Points,
    { width, height }: PictureSize,
): HTMLCanvasElement {
    const { stage, store } = context;
    const { state } = store;
    const ratio = height / DESIGN_HEIGHT;
    const stone = stage!.picture(width, Math.round(height - CAPTION * ratio), ratio);
    const canvas = document.createElement("canvas");
    canvas.width = width;
    canvas.height = height;
    const pen = canvas.getContext("2d")!;
    const colours = coloursOf(state.isDark);
    pen.fillStyle = state.isDark ? "#1b1d21" : "#efedea";
    pen.fillRect(0, 0, width, height);
    pen.drawImage(stone, 0, 0);
    pen.scale(ratio, ratio);
    const area = { width: width / ratio, height: DESIGN_HEIGHT - CAPTION };
    drawEdge(pen, context, area, colours.ink);
    drawMarks(pen, context, points, area);
    pen.save();
    pen.translate(MARGIN, MARGIN);
    if (state.show === "change" && area.width > 2 * LEGEND_WIDTH && area.height > LEGEND_HEIGHT) {
        drawLegend(pen, context, state, legend.counts, colours);
    }
    pen.restore();
    drawScaleBar(
        pen,
        area.width - MARGIN,
        area.height - MARGIN,
        stage!.view.millimetresHigh / area.height,
        colours.ink,
    );
    drawCaption(pen, context, area, state.isDark ? "#26292e" : "#ffffff", colours.ink);
    return canvas;
}

function drawEdge(pen: CanvasRenderingContext2D, { store }: Context, area: PictureSize, ink: string): void {
    if (store.state.side === "wipe") {
        pen.fillStyle = ink;
        pen.fillRect(store.state.edge * area.width - 1, 0, 2, area.height);
    }
}

function drawMarks(
    pen: CanvasRenderingContext2D,
    { stage }: Context,
    points: Points,
    area: PictureSize,
): void {
    pen.textAlign = "center";
    pen.textBaseline = "middle";
    points.chosen.forEach((point, i) => {
        const [x, y] = stage!.placeOf(point.place);
        pen.fillStyle = points.colour(i);
        pen.strokeStyle = "#fff";
        pen.lineWidth = 1.5;
        pen.beginPath();
        pen.arc(x * area.width, y * area.height, 10.5, 0, 2 * Math.PI);
        pen.fill();
        pen.stroke();
        pen.fillStyle = "#fff";
        pen.font = `600 12px ${getComputedStyle(document.body).fontFamily}`;
        pen.fillText(String(i + 1), x * area.width, y * area.height);
    });
    pen.textAlign = "start";
    pen.textBaseline = "alphabetic";
}

function drawCaption(
    pen: CanvasRenderingContext2D,
    context: Context,
    area: PictureSize,
    paper: string,
    ink: string,
): void {
    pen.fillStyle = paper;
    pen.fillRect(0, area.height, area.width, CAPTION);
    pen.fillStyle = ink;
    pen.font = `14px ${getComputedStyle(document.body).fontFamily}`;
    pen.fillText(captionOf(context), MARGIN, area.height + 25, area.width - 2 * MARGIN);
}

export function captionOf({ header, store }: Context): string {
    const { state } = store;
    const epoch = epochOf(header, state.frame);
    const time = timePhrase(header, epoch, state.timeUnit);
    const mean = figureOf(header, epoch, "mean")!;
    const parts = [
        epochPhrase(header, epoch),
        `${text.legend[header.kind]}: ${mean.text} mm`,
        state.show === "change"
            ? `${String(inUnit(state, state.low))} … ${String(inUnit(state, state.high))} ${state.unit}`
            : "",
        enlargementText(state),
    ];
    return text.picture.caption(
        header.mesh,
        time,
        parts
            .filter((part) => part !== "")
            .map((part) => `, ${part}`)
            .join(""),
    );
}
